#pragma once

#include "sectionlist/SectionListContent.h"
#include "sectionlist/SectionListRow.h"
#include "sectionlist/SectionListWheel.h"

#include <functional>
#include <optional>

class QScrollBar;
class SectionListBody;
class SectionListFocus;
class SectionListHeading;

/// Sections of rows of varying height in a scroll area. Widgets exist for the rows in view and a
/// small margin only and are used again for others; heights are estimated until a row is seen, and
/// corrected then without moving what is in view. The heading of a section sticks to the top.
///
/// It fills a Pane to its left, right and lower edges, from whose outer sides its distances count.
/// One stop on the tab key's way: the current row, then its buttons. Main thread only.
class SectionList : public QWidget {
    Q_OBJECT

public:
    /// `makeRow` makes an empty row, which the list then owns.
    explicit SectionList(std::function<SectionListRow *()> makeRow, QWidget *parent = nullptr);
    ~SectionList() override;

    /// Replaces the content. What keeps its id keeps its focus, its selection and, if it is what
    /// the eye reads first, its place; if that row is gone, the nearest one in view that is left
    /// stays where it is. A list that stands at its very top stays there.
    void setContent(SectionListContent content);

    /// Fills the rows again and measures them anew: for a change of what rows show that is not a
    /// change of rows. The place is kept.
    void refreshRows();

    /// Shows this row, and no other, as selected.
    void setSelectedRow(const std::optional<QString> &id);

    /// Gives the row the keyboard focus and brings it into view; the ring shows if the keyboard was
    /// used last. Without such a row, the row in its place gets it.
    void focusRow(const QString &id);

    int rowCount() const;
    /// The row that has the focus, or had it last.
    std::optional<int> currentRow() const;
    /// The widget that shows the row now: none for most rows. Not to be kept.
    SectionListRow *widgetOf(int row) const;
    /// The row that is at this point of the list; none in a heading.
    std::optional<int> rowAt(QPoint point) const;
    /// Scrolls by as little as it takes to bring the whole row into view; without such a row, not.
    void showRow(int row);

    /// Its value is how far the list is scrolled, in pixels; by estimate, beyond the rows seen.
    QScrollBar *scrollBar() const { return m_bar; }

Q_SIGNALS:
    void rowActivated(int row);

protected:
    void changeEvent(QEvent *event) override;
    void focusInEvent(QFocusEvent *event) override;
    bool focusNextPrevChild(bool next) override;
    void keyPressEvent(QKeyEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void wheelEvent(QWheelEvent *event) override;

private:
    friend class SectionListReader;

    void followBody();
    void followBar(int value);
    void stickHeading();

    SectionListBody *m_body;
    SectionListHeading *m_heading;
    QScrollBar *m_bar;
    SectionListFocus *m_focus;
    SectionListWheel m_wheel;
    bool m_followingBody = false;
    bool m_refreshing = false;
    int m_contentNumber = 0;
};
