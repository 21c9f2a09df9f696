#pragma once

#include "sectionlist/SectionListRow.h"
#include "sectionlist/SectionListRows.h"

#include <QWidget>

#include <functional>
#include <optional>

/// The scrolled part of a SectionList: the rows in view and the headings between them. It moves
/// what is on the screen and repaints only what comes into view.
class SectionListBody : public QWidget {
    Q_OBJECT

public:
    SectionListBody(std::function<SectionListRow *()> makeRow, QWidget *parent);

    const SectionListContent &content() const { return m_content; }
    const SectionListFlow &flow() const { return m_flow; }
    const SectionListRows &rows() const { return m_rows; }
    int rowCount() const { return m_flow.offsets.rowCount(); }

    /// `found` tells where the rows that have a widget now are in the new content. The pinned row
    /// has a widget even out of view.
    void setContent(SectionListContent content, const QHash<QString, int> &found,
                    std::optional<int> pinned);
    /// Fills and measures the rows again.
    void refresh();

    void scrollBy(int pixels);
    void scrollTo(int top);
    void scrollToEnd();
    /// Scrolls as little as it takes to bring the whole row into view.
    void showRow(int row);
    /// Makes and keeps the row's widget, in view or not, until another row is pinned.
    void pin(std::optional<int> row);
    /// The row at this point; none in a heading or below the last row.
    std::optional<int> rowAt(QPoint point) const;

    /// So much at the top lies under a heading now.
    void setCovered(int height) { m_covered = height; }
    /// A widget that is filled with the row now, in the list or not; for its accessible texts.
    const SectionListRow *read(int row) { return m_rows.read(row, m_content); }
    void setSelected(const std::optional<QString> &id);
    void setRingShown(bool shown);
    void updateStates();

Q_SIGNALS:
    void moved(); ///< the place in the list, or its length, may have changed
    void rowMade(SectionListRow *row);

protected:
    bool event(QEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    using Place = SectionListFlow::Place;

    SectionListRow *makeRow(const std::function<SectionListRow *()> &make);
    SectionListFlow::Measure measure();
    SectionListRows::Bound &bind(int row);
    std::optional<Place> keptPlace(const QHash<QString, int> &found) const;

    enum class Repaint { WhatMoves, Everything };
    void layOut(Repaint repaint = Repaint::WhatMoves, const std::optional<Place> &kept = {});
    void paintWhatWaits();
    void placeRows(Repaint repaint);
    void handOnFocus();
    void moveOnScreen(int shift);
    std::optional<int> shiftOnScreen() const;
    bool isNear(int row) const;
    QRect rectOf(int row) const;
    void tellPointer();

    SectionListContent m_content;
    SectionListFlow m_flow;
    SectionListRows m_rows;
    std::optional<int> m_pinned;
    std::optional<QString> m_selected;
    std::optional<QPoint> m_pointer; ///< while it is over the list
    int m_covered = 0;
    bool m_ringShown = false;
    bool m_hasSize = false; ///< one to be seen in: it comes when it is first shown
    bool m_filling = false;
    bool m_tellingPointer = false;
    bool m_unpainted = false;
};
