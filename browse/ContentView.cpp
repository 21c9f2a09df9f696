#include "browse/ContentView.h"

#include "backend/SupabaseClient.h"
#include "backend/Unattended.h"
#include "browse/EventList.h"
#include "browse/Rehearsal.h"
#include "controls/BusyIndicator.h"
#include "controls/ErrorText.h"
#include "controls/Pane.h"
#include "controls/TabStrip.h"
#include "controls/TabView.h"
#include "look/Fonts.h"
#include "look/KeyboardFocus.h"
#include "platform/NotificationCenter.h"
#include "sectionlist/SectionListRow.h"

#include <QAction>
#include <QFontMetrics>
#include <QScreen>
#include <QShowEvent>
#include <QStackedLayout>
#include <QTimer>
#include <QVBoxLayout>

#include <algorithm>
#include <initializer_list>
#include <optional>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

constexpr int drawnLine = 16; ///< of the body's type, in pixels
constexpr int linesOfForm = 16;
constexpr QSize aroundWindow{16, 40}; ///< what a desktop draws around a window, and a little

/// What lies below the header. It takes the room that is left: what is long in it scrolls, and
/// takes none from the header.
class Body final : public QWidget {
public:
    using QWidget::QWidget;

    bool hasHeightForWidth() const override { return false; }
    QSize sizeHint() const override { return {}; }
    QSize minimumSizeHint() const override { return {}; }
};

bool showsRing(const QWidget *focus)
{
    const auto *row = qobject_cast<const SectionListRow *>(focus);
    return row ? row->showsFocus() : KeyboardFocus::isVisibleOn(focus);
}

} // namespace

ContentView::ContentView(QWidget *parent, Now now)
    : QWidget(parent)
    , m_now(std::move(now))
    , m_header(new Header(headerActions(), this))
    , m_body(new Body(this))
    , m_parts(new QStackedLayout(m_body))
    , m_busy(new BusyIndicator(u"Loading events…"_s, m_body))
    , m_error(new ErrorText(m_body))
    , m_pane(new Pane(m_body))
    , m_tabs(new TabView(m_pane))
{
    setWindowTitle(u"aMorvelle"_s);
    setMinimumSize(520, 360);
    // Set, not left to the layout: as its texts may wrap, it would open at the least height.
    resize(sizeHint());

    const auto choose = [this](std::optional<Event> State::*member) {
        return [this, member](const Event &event) {
            m_state.*member = event;
            render();
        };
    };
    const EventList::Actions actions = {
        .onSelect = choose(&State::selectedEvent),
        .onEdit = choose(&State::eventToEdit),
        .onDelete = choose(&State::eventToDelete),
    };
    const auto addTab = [&](const QString &title) {
        auto *list = new EventList(title, actions, m_tabs);
        m_tabs->addTab(title, list);
        return list;
    };
    m_upcoming = addTab(u"À venir"_s);
    m_past = addTab(u"Passés"_s);
    m_pane->setContent(m_tabs);
    for (QWidget *part : std::initializer_list<QWidget *>{m_busy, m_error, m_pane})
        m_parts->addWidget(part);

    addShortcuts();

    auto *column = new QVBoxLayout(this);
    column->setContentsMargins(16, 16, 16, 16);
    column->setSpacing(12);
    column->addWidget(m_header);
    column->addWidget(m_body, 1);

    // Queued: the remembered record is saved right after the announcement of a sign-in.
    connect(
        &NotificationCenter::defaultCenter(), &NotificationCenter::posted, this,
        [this](const QString &name) {
            if (name == SupabaseClient::authChangedNotification())
                followSession();
        },
        Qt::QueuedConnection);
    // It opens loading: no empty list flashes, and what comes later is neither laid out for the
    // first frame nor its fonts met.
    m_state.isLoading = true;
    followSession();
    // Otherwise the first control would have it unseen, and Space would press that.
    setFocus();
}

std::optional<QString> ContentView::savedEmailDisplay() const
{
    for (const auto &email : {SupabaseClient::session().userEmail, m_state.savedEmail}) {
        if (email && !email->isEmpty())
            return email;
    }
    return {};
}

QSize ContentView::sizeHint() const
{
    // Larger where the type is larger and its lines are taller than drawn: the form of an event,
    // the longest of the sheets, needs no scrolling in a window as it opens.
    const int taller = QFontMetrics(appFont(13)).height() - scaled(drawnLine);
    const QSize drawn(scaled(760), scaled(620) + linesOfForm * std::max(0, taller));
    return drawn.boundedTo(screen()->availableSize() - aroundWindow).expandedTo(minimumSize());
}

Header::Actions ContentView::headerActions()
{
    return {
        .onAddAccount =
            [this] {
                m_eventBefore = shownList()->focusedEvent();
                m_state.loginMode = AuthMode::signUp;
                m_state.isLoginPresented = true;
                render();
            },
        .onAddEvent =
            [this] {
                m_eventBefore = shownList()->focusedEvent();
                m_state.isAddPresented = true;
                render();
            },
        .onAccount =
            [this] {
                m_state.isAccountMenuPresented = true;
                render();
            },
    };
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
    if (event->spontaneous())
        return;
    // Before the first frame, so that the service works on its answer while that is painted.
    runUnattended(appear());
}

void ContentView::paintEvent(QPaintEvent *event)
{
    QWidget::paintEvent(event);
    // Once the first frame is there, while the answer is awaited.
    if (!std::exchange(m_hasRehearsed, true))
        rehearse(0);
}

void ContentView::rehearse(int part)
{
    QTimer::singleShot(0, this, [this, part] {
        if (m_state.isLoading && rehearseList(*this, *m_tabs->strip(), part))
            rehearse(part + 1);
    });
}

void ContentView::addShortcuts()
{
    auto *reloadAction = new QAction(this);
    reloadAction->setShortcuts({QKeySequence(Qt::Key_F5), QKeySequence(Qt::CTRL | Qt::Key_R)});
    reloadAction->setAutoRepeat(false); // a key that is held asks once
    connect(reloadAction, &QAction::triggered, this, &ContentView::reload);
    // Not the window's own: a sheet takes the body out of reach, and this with it.
    m_body->addAction(reloadAction);
}

void ContentView::render()
{
    m_header->setContent({
        .isSignedIn = m_state.isSignedIn,
        .hasSavedCredentials = m_state.hasSavedCredentials,
        .email = savedEmailDisplay(),
        .isAccountMenuPresented = m_state.isAccountMenuPresented,
    });
    m_error->setText(m_state.errorMessage.value_or(QString()));
    renderEvents();
    if (m_state.isLoading)
        showBody(m_busy);
    else if (m_state.errorMessage)
        showBody(m_error);
    else
        showBody(m_pane);
    renderSheets();
    renderAccountMenu();
}

void ContentView::putBackFocus(const QString &eventId)
{
    EventList *list = shownList();
    if (!list->isVisible()) {
        // The list is on its way.
        m_keptFocus = {nullptr, eventId, false};
        m_body->setFocus(Qt::OtherFocusReason);
    } else if (list->focusedEvent() != eventId) {
        // One of the row's own buttons has kept it where it was that button which opened the sheet.
        list->focusEvent(eventId);
    }
}

void ContentView::renderEvents()
{
    // A row is marked as long as something about it is open.
    std::optional<QString> selected;
    for (const auto &event : {m_state.selectedEvent, m_state.eventToEdit, m_state.eventToDelete}) {
        if (event)
            selected = event->id;
    }
    for (EventList *list : {m_upcoming, m_past}) {
        list->setCurrentUserId(m_state.currentUserId);
        list->setSelectedEvent(selected);
    }

    // The lists are out of view, and at the start there is nothing in them yet.
    if (m_state.isLoading)
        return;
    const Calendar calendar = Calendar::current();
    const Instant today = calendar.startOfDay(m_now());
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
    // place, and hold the focus so that it does not jump to the header meanwhile. An error that
    // gives way is no place to come back to.
    QWidget *focus = focusWidget();
    if (focus && m_pane->isAncestorOf(focus))
        m_keptFocus = {focus, shownList()->focusedEvent(), showsRing(focus)};
    if (focus && m_body->isAncestorOf(focus))
        m_body->setFocus(Qt::OtherFocusReason);
    m_parts->setCurrentWidget(part);
    if (part != m_pane)
        return;
    const KeptFocus kept = std::exchange(m_keptFocus, {});
    if (focusWidget() != m_body)
        return;
    if (kept.eventId)
        shownList()->focusEvent(*kept.eventId);
    // A list without events takes no focus, and the body has no name that a reader could say.
    if (kept.eventId && focusWidget() == m_body) {
        QWidget *tab = m_tabs->strip()->currentTab();
        if (kept.hadRing)
            KeyboardFocus::give(tab);
        else
            tab->setFocus(Qt::OtherFocusReason);
        return;
    }
    // A widget of the list may by now be that of another event, or hidden.
    const bool isStillThere = kept.widget && kept.widget->isVisible()
        && (!kept.eventId
            || (shownList()->focusedEvent() == kept.eventId
                && focusWidget()->isAncestorOf(kept.widget)));
    if (isStillThere)
        KeyboardFocus::handOver(kept.widget, kept.widget);
}

EventList *ContentView::shownList() const
{
    return m_tabs->currentIndex() == 0 ? m_upcoming : m_past;
}
