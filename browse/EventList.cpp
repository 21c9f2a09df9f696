#include "browse/EventList.h"

#include "browse/Ownership.h"
#include "controls/TextLabel.h"
#include "look/Fonts.h"
#include "sectionlist/SectionList.h"

#include <QStackedLayout>
#include <QVBoxLayout>

#include <optional>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

/// "No events found." in the middle of the room there is.
QWidget *makeEmptyNotice(QWidget *parent)
{
    auto *notice = new QWidget(parent);
    auto *label = new TextLabel(u"No events found."_s, appFont(13), secondaryText, notice);
    label->setAlignment(Qt::AlignHCenter);
    auto *column = new QVBoxLayout(notice);
    column->setContentsMargins(0, 0, 0, 0); // so that it is whole in little room
    column->setSpacing(0);
    column->addStretch();
    column->addWidget(label);
    column->addStretch();
    return notice;
}

} // namespace

EventList::EventList(const QString &title, const Actions &actions, QWidget *parent)
    : QWidget(parent)
    , m_body(new QStackedLayout(this))
    , m_none(makeEmptyNotice(this))
    , m_list(new SectionList(
          [edit = actions.onEdit, remove = actions.onDelete] { return new EventRow(edit, remove); },
          this))
{
    m_list->setAccessibleName(title);
    m_list->setMinimumHeight(1); // it scrolls; tabs and notice are to be whole in little room
    connect(m_list, &SectionList::rowActivated, this, [this, select = actions.onSelect](int row) {
        select(Event(m_events.at(m_rows.at(row))));
    });
    m_body->addWidget(m_none);
    m_body->addWidget(m_list);
}

void EventList::setEvents(const QList<Event> &events, const QList<EventGroup> &groups,
                          const Calendar &calendar)
{
    m_events = events;
    m_calendar = calendar;
    m_rows.clear();
    SectionListContent content;
    for (const EventGroup &group : groups) {
        content.sections.append({group.title, static_cast<int>(group.items.size())});
        m_rows.append(group.items);
    }
    content.rowId = [this](int row) { return m_events.at(m_rows.at(row)).id; };
    content.fill = [this](SectionListRow &widget, int row) {
        const Event &event = m_events.at(m_rows.at(row));
        static_cast<EventRow &>(widget).setEvent(event, isOwner(event, m_currentUserId),
                                                 *m_calendar);
    };
    m_list->setContent(std::move(content));
    m_body->setCurrentWidget(m_rows.isEmpty() ? m_none : m_list);
}

void EventList::setCurrentUserId(const std::optional<QString> &userId)
{
    if (userId == m_currentUserId)
        return;
    m_currentUserId = userId;
    m_list->refreshRows();
}

void EventList::setSelectedEvent(const std::optional<QString> &id)
{
    m_list->setSelectedRow(id);
}

void EventList::focusEvent(const QString &id)
{
    m_list->focusRow(id);
}

std::optional<QString> EventList::focusedEvent() const
{
    const QWidget *focus = m_list->window()->focusWidget();
    const std::optional<int> row = m_list->currentRow();
    if (!focus || !row || !m_list->isAncestorOf(focus))
        return {};
    return m_events.at(m_rows.at(*row)).id;
}
