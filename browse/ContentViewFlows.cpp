// What the window does over time: its appearance, loads, deletions, and the session it follows.

#include "account/CredentialsStore.h"
#include "backend/LocalizedError.h"
#include "backend/SupabaseClient.h"
#include "backend/Unattended.h"
#include "browse/ContentView.h"
#include "controls/Popover.h"

#include <memory>
#include <optional>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

/// The most events that are put in order where they came in: a fraction of a millisecond's work,
/// less than the way to the worker and back takes.
constexpr qsizetype mostOrderedHere = 500;

/// Signs in with the remembered record, if there is one. Silent when that fails: nobody has asked
/// for it just now, and the header shows that nobody is signed in.
QCoro::Task<void> signInWithSavedCredentials()
{
    const std::optional<Credentials> saved = CredentialsStore::loadCredentials();
    if (!saved)
        co_return;
    try {
        const QCoro::Task<void> signingIn = SupabaseClient::signIn(saved->email, saved->password);
        co_await signingIn;
    } catch (...) {
        // See above.
    }
}

} // namespace

QCoro::Task<void> ContentView::appear()
{
    const QPointer<ContentView> self(this);
    if (!m_state.didPurgeSavedCredentials) {
        m_state.didPurgeSavedCredentials = true;
        try {
            SupabaseClient::clearSavedCredentials();
        } catch (...) {
            // The list comes in every case.
        }
    }
    if (!m_state.didAttemptAutoLogin) {
        m_state.didAttemptAutoLogin = true;
        const QCoro::Task<void> attempt = signInWithSavedCredentials();
        co_await attempt;
        if (!self)
            co_return;
    }
    const QCoro::Task<void> loading = loadEvents();
    co_await loading;
}

void ContentView::reload()
{
    runUnattended(loadEvents());
}

QCoro::Task<void> ContentView::reloadAfterSave(QPointer<ContentView> window)
{
    // Started, not awaited: the form need not wait for the list.
    if (window)
        window->reload();
    co_return;
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
        QCoro::Task<QList<Event>> fetching = SupabaseClient::fetchEvents();
        fetched = co_await fetching;
    } catch (...) {
        failure = currentFailure();
    }
    if (!self)
        co_return;
    if (failure) {
        failLoad(*failure);
        co_return;
    }

    if (fetched.size() <= mostOrderedHere) {
        finishLoad(datedEvents(std::move(fetched)));
        co_return;
    }
    const auto ordered = std::make_shared<DatedEvents>();
    m_worker.run(
        [ordered, fetched = std::move(fetched)]() mutable {
            *ordered = datedEvents(std::move(fetched));
        },
        this, [this, ordered] { finishLoad(std::move(*ordered)); },
        [this] { failLoad(u"There is not enough memory for the events."_s); });
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
    m_state.errorMessage = u"Failed to load events: "_s + description;
    m_state.isLoading = false;
    render();
}

QCoro::Task<void> ContentView::deleteEvent(Event event)
{
    const QPointer<ContentView> self(this);
    std::optional<QString> failure;
    try {
        const QCoro::Task<void> deleting = SupabaseClient::deleteEvent(event.id);
        co_await deleting;
    } catch (...) {
        failure = currentFailure();
    }
    if (!self)
        co_return;
    if (failure) {
        m_state.errorMessage = u"Failed to delete event: "_s + *failure;
        render();
        co_return;
    }
    const QCoro::Task<void> loading = loadEvents();
    co_await loading;
}

void ContentView::followSession()
{
    const std::optional<Credentials> saved = CredentialsStore::loadCredentials();
    m_state.isSignedIn = SupabaseClient::session().accessToken.has_value();
    m_state.currentUserId = SupabaseClient::session().userId;
    m_state.hasSavedCredentials = saved.has_value();
    m_state.savedEmail = saved ? std::optional(saved->email) : std::nullopt;
    render();
    if (Popover *menu = m_accountMenu.shown())
        menu->setContent(makeAccountMenu());
}

void ContentView::connectAgain()
{
    runUnattended(signInWithSavedCredentials());
}
