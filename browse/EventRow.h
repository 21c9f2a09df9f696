#pragma once

#include "model/Event.h"
#include "platform/Calendar.h"
#include "sectionlist/SectionListRow.h"

#include <functional>

class EventMeta;
class IconButton;
class TagChips;
class TextLabel;

/// One event in the list: title, description, date, time, place and tags, and for its owner a
/// button to change and one to delete it.
class EventRow : public SectionListRow {
    Q_OBJECT

public:
    using Action = std::function<void(const Event &)>;

    /// `onEdit` and `onDelete` are called with the event shown when its button is pressed.
    EventRow(Action onEdit, Action onDelete, QWidget *parent = nullptr);

    /// Shows another event, or the same one to somebody else.
    void setEvent(const Event &event, bool isOwner, const Calendar &calendar);

    int heightFor(int width) const override;
    QList<QWidget *> buttons() const override;

protected:
    void resizeEvent(QResizeEvent *event) override;

private:
    int textWidth(int width) const;
    void arrange();

    Event m_event;
    TextLabel *m_title;
    TextLabel *m_description;
    EventMeta *m_meta;
    TagChips *m_chips;
    IconButton *m_edit;
    IconButton *m_delete;
};
