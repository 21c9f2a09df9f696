#include "browse/ContentView.h"

#include "backend/LocalizedError.h"
#include "backend/SupabaseClient.h"
#include "browse/EventDetailView.h"
#include "browse/EventList.h"
#include "browse/Header.h"
#include "controls/BusyIndicator.h"
#include "controls/ErrorText.h"
#include "controls/Pane.h"
#include "controls/TabStrip.h"
#include "controls/TabView.h"

#include <QAction>
#include <QDateTime>
#include <QShowEvent>
#include <QStackedLayout>
#include <QVBoxLayout>

#include <utility>

namespace {

Instant now()
{
    return {QDateTime::currentMSecsSinceEpoch()};
}

} // namespace

ContentView::ContentView(QWidget *parent)
    : QWidget(parent)
    , m_header(new Header({}, this))
    , m_body(new QWidget(this))
    , m_parts(new QStackedLayout(m_body))
    , m_busy(new BusyIndicator(QStringLiteral("Loading events…"), m_body))
    , m_error(new ErrorText(m_body))
    , m_pane(new Pane(m_body))
    , m_tabs(new TabView(m_pane))
{
    setWindowTitle(QStringLiteral("aMorvelle"));
    setMinimumSize(520, 360);
    // Set, not left to the layout: as its texts may wrap, it would open at the least height.
    resize(sizeHint());

    const EventList::Actions actions = {
        .onSelect =
            [this](const Event &event) {
                m_state.selectedEvent = event;
                render();
            },
        .onEdit = [](const Event &) {},
        .onDelete = [](const Event &) {},
    };
    m_upcoming = new EventList(actions, m_tabs);
    m_past = new EventList(actions, m_tabs);
    m_tabs->addTab(QStringLiteral("À venir"), m_upcoming);
    m_tabs->addTab(QStringLiteral("Passés"), m_past);
    m_pane->setContent(m_tabs);
    for (QWidget *part : std::initializer_list<QWidget *>{m_busy, m_error, m_pane})
        m_parts->addWidget(part);

    auto *reloadAction = new QAction(this);
    reloadAction->setShortcuts({QKeySequence(Qt::Key_F5), QKeySequence(Qt::CTRL | Qt::Key_R)});
    connect(reloadAction, &QAction::triggered, this, &ContentView::reload);
    addAction(reloadAction);

    auto *column = new QVBoxLayout(this);
    column->setContentsMargins(16, 16, 16, 16);
    column->setSpacing(12);
    column->addWidget(m_header);
    column->addWidget(m_body, 1);

    m_state.isSignedIn = SupabaseClient::session().accessToken.has_value();
    m_state.currentUserId = SupabaseClient::session().userId;
    render();
}

QSize ContentView::sizeHint() const
{
    return {760, 620};
}

void ContentView::changeEvent(QEvent *event)
{
    QWidget::changeEvent(event);
    // A window that was left open over night shows the new day when somebody comes back to it.
    if (event->type() == QEvent::ActivationChange && isActiveWindow())
        render();
}

void ContentView::showEvent(QShowEvent *event)
{
    QWidget::showEvent(event);
    // A spontaneous one only says that the desktop has un-minimised the window.
    if (!event->spontaneous())
        appear();
}

void ContentView::appear()
{
    reload();
}

void ContentView::reload()
{
    // Runs on by itself; nothing is thrown out of it.
    const auto task = loadEvents();
}

QCoro::Task<void> ContentView::loadEvents()
{
    m_state.isLoading = true;
    m_state.errorMessage.reset();
    render();

    const QPointer<ContentView> self(this);
    QList<Event> fetched;
    std::optional<QString> failure;
    try {
        fetched = co_await SupabaseClient::fetchEvents();
    } catch (const LocalizedError &error) {
        failure = error.localizedDescription();
    }
    if (!self)
        co_return;
    if (failure) {
        failLoad(*failure);
        co_return;
    }

    const auto ordered = std::make_shared<DatedEvents>();
    m_worker.run(
        [ordered, fetched = std::move(fetched)]() mutable {
            *ordered = datedEvents(std::move(fetched));
        },
        this, [this, ordered] { finishLoad(std::move(*ordered)); });
}

void ContentView::finishLoad(DatedEvents events)
{
    DatedEvents old = std::exchange(m_state.events, std::move(events));
    m_state.isLoading = false;
    m_shownDay.reset();
    render();
    // The lists let go of the old events above, so that here goes the last hold on them: freeing
    // many takes longer than a frame.
    m_worker.run([old = std::move(old)] {});
}

void ContentView::failLoad(const QString &description)
{
    m_state.errorMessage = QStringLiteral("Failed to load events: ") + description;
    m_state.isLoading = false;
    render();
}

void ContentView::render()
{
    m_header->setContent({
        .isSignedIn = m_state.isSignedIn,
        .hasSavedCredentials = false,
        .email = SupabaseClient::session().userEmail,
        .isAccountMenuPresented = false,
    });
    m_error->setText(m_state.errorMessage.value_or(QString()));
    renderEvents();
    if (m_state.isLoading)
        showBody(m_busy);
    else if (m_state.errorMessage)
        showBody(m_error);
    else
        showBody(m_pane);
    renderDetail();
}

void ContentView::renderDetail()
{
    if (m_state.selectedEvent.has_value() == (m_detail != nullptr))
        return;
    if (!m_state.selectedEvent) {
        std::exchange(m_detail, nullptr)->deleteLater();
        return;
    }
    m_detail = new EventDetailView(*m_state.selectedEvent, Calendar::current(), this);
    // However it was closed, the selection goes with it and the row has the keyboard again.
    connect(m_detail, &Sheet::closed, this, [this, id = m_state.selectedEvent->id] {
        m_state.selectedEvent.reset();
        render();
        shownList()->focusEvent(id);
    });
    m_detail->open();
}

void ContentView::renderEvents()
{
    std::optional<QString> selected;
    if (m_state.selectedEvent)
        selected = m_state.selectedEvent->id;
    for (EventList *list : {m_upcoming, m_past}) {
        list->setCurrentUserId(m_state.currentUserId);
        list->setSelectedEvent(selected);
    }

    const Calendar calendar = Calendar::current();
    const Instant today = calendar.startOfDay(now());
    if (m_shownDay == today)
        return;
    m_shownDay = today;
    const auto &[events, dates] = m_state.events;
    const qsizetype coming = firstUpcoming(dates, today);
    m_upcoming->setEvents(events, groupedEvents(dates, coming, dates.size(), true, calendar),
                          calendar);
    m_past->setEvents(events, groupedEvents(dates, 0, coming, false, calendar), calendar);
}

void ContentView::showBody(QWidget *part)
{
    if (m_parts->currentWidget() == part)
        return;
    // The pane that gives way to the busy indicator takes the keyboard's place with it: keep that
    // place, and hold the focus so that it does not jump to the header meanwhile.
    QWidget *focus = focusWidget();
    if (focus && m_pane->isAncestorOf(focus)) {
        m_keptFocus = {focus, shownList()->focusedEvent()};
        m_body->setFocus(Qt::OtherFocusReason);
    }
    m_parts->setCurrentWidget(part);
    if (part != m_pane)
        return;
    const KeptFocus kept = std::exchange(m_keptFocus, {});
    if (focusWidget() != m_body)
        return;
    if (kept.eventId)
        shownList()->focusEvent(*kept.eventId);
    else if (kept.widget)
        kept.widget->setFocus(Qt::OtherFocusReason);
}

EventList *ContentView::shownList() const
{
    return m_tabs->currentIndex() == 0 ? m_upcoming : m_past;
}
