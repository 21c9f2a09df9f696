#pragma once

#include "browse/EventOrder.h"
#include "browse/EventRow.h"

#include <QWidget>

#include <optional>

class QStackedLayout;
class SectionList;

/// What one tab shows: its events month by month, or that there are none.
class EventList : public QWidget {
    Q_OBJECT

public:
    struct Actions {
        EventRow::Action onSelect; ///< the row was chosen
        EventRow::Action onEdit;
        EventRow::Action onDelete;
    };

    /// `title` is what screen readers call the list.
    EventList(const QString &title, const Actions &actions, QWidget *parent = nullptr);

    /// Shows these groups of `events`; place, focus and selection stay where they are.
    void setEvents(const QList<Event> &events, const QList<EventGroup> &groups,
                   const Calendar &calendar);
    /// Whose events show their buttons.
    void setCurrentUserId(const std::optional<QString> &userId);
    /// The event shown as chosen, by its id.
    void setSelectedEvent(const std::optional<QString> &id);
    /// Gives the event's row the keyboard focus, as after its sheet has closed.
    void focusEvent(const QString &id);
    /// The event whose row, or a button of it, has the keyboard focus.
    std::optional<QString> focusedEvent() const;

private:
    QList<Event> m_events;
    QList<qsizetype> m_rows; ///< row -> index into m_events
    std::optional<Calendar> m_calendar; ///< none before the first events
    std::optional<QString> m_currentUserId;
    QStackedLayout *m_body;
    QWidget *m_none;
    SectionList *m_list;
};
