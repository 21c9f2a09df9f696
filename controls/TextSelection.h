#pragma once

#include <QObject>
#include <QString>
#include <QTextLayout>

#include <algorithm>

class QContextMenuEvent;
class QKeyEvent;
class QMouseEvent;
class QWidget;
class TextBlock;

/// Lets the text of a label be selected and copied, and nothing be changed: by a drag and a double
/// click, by the menu of the right button, and by the keyboard, which comes to the label on its way
/// through the window and finds all of it selected. Of a text that is cut it selects all; copying
/// all gives the whole text, letter by letter.
class TextSelection : public QObject {
    Q_OBJECT

public:
    /// `block` is what `label` shows of `text`, `left` pixels from its left edge; both belong to
    /// the label.
    TextSelection(QWidget *label, TextBlock *block, const QString *text, int left);

    /// For the label to paint; empty when nothing is selected.
    QList<QTextLayout::FormatRange> formats() const;
    /// What copying gives; empty when nothing is selected.
    QString selected() const;

    void selectAll();
    void clear();
    void copy() const;

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    const TextBlock &shown() const; ///< laid out as it is seen
    int first() const { return std::min(m_anchor, m_cursor); }
    int last() const { return std::max(m_anchor, m_cursor); }
    bool isAll() const;
    int positionAt(const QMouseEvent &event) const;
    void select(int anchor, int cursor);
    bool press(const QMouseEvent &event);
    void selectWordAt(int position);
    bool handleKey(const QKeyEvent &event);
    void offer(const QContextMenuEvent &event);

    QWidget *m_label;
    TextBlock *m_block;
    const QString *m_text;
    int m_left;
    int m_anchor = 0; ///< where the selection began
    int m_cursor = 0; ///< where it has come to
    bool m_isDragging = false;
};
