#pragma once

#include <QObject>

#include <optional>

class QKeyEvent;
class QWidget;
class SectionListBody;
class SectionListRow;

/// The keyboard in a SectionList: the current row, the way of the arrow and tab keys, and whether
/// the ring shows.
class SectionListFocus : public QObject {
    Q_OBJECT

public:
    /// `list` is the widget that the tab key takes for the whole list.
    SectionListFocus(QWidget *list, SectionListBody *body);

    std::optional<int> currentRow() const { return m_row; }
    const std::optional<QString> &currentId() const { return m_id; }
    bool isWithin() const; ///< a row or a button of one has the focus

    /// The current row after a change of content; it is not given the focus.
    void setCurrent(std::optional<int> row);
    /// Gives a row the focus and brings it into view. `byKeyboard` unset: as before.
    void give(int row, std::optional<bool> byKeyboard = {});
    /// From outside: by the tab key, to the current row; backwards, to its last button.
    void enter(Qt::FocusReason reason);
    /// The tab key within the list; false: on, out of the list.
    bool step(bool next);
    bool handleKey(QKeyEvent *event);
    /// Gives the widget after the list, or before it, the focus; false when there is none.
    bool leave(bool next);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void watch(SectionListRow *row);
    void entered(QObject *widget, Qt::FocusReason reason);
    void giveToRowOf(QWidget *widget);
    QList<QWidget *> stops() const;
    void giveStop(QWidget *stop, bool next);
    bool stepAside(bool next);
    int startRow() const;
    void movePage(int direction);

    QWidget *m_list;
    SectionListBody *m_body;
    std::optional<int> m_row;
    std::optional<QString> m_id;
};
