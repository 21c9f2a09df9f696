// Whether a walk is where it ought to be.

#include "controls/ErrorText.h"
#include "support/MembersWindow.h"
#include "walk/Finding.h"
#include "walk/Rows.h"
#include "walk/Walk.h"

#include <QDeadlineTimer>

#include <optional>

using namespace Qt::StringLiterals;

namespace {

constexpr int lastChance = 1500; // ms, for what comes without a sign of its coming
constexpr int breath = 20; // ms

} // namespace

/// Everything that was to come has come: each load and each failure can be told from the others.
bool Walk::looksAtRest() const
{
    using WindowTest::named;
    const QString failure = Finding::failure(m_window.get());
    const bool isFailureShown = !m_hasFailed ? failure.isEmpty()
        : m_state.status == 0                ? failure.endsWith(u"connecté."_s)
                                             : failure.contains(u"non %1\""_s.arg(m_state.failure));
    const Sheet *sheet = MembersWindow::sheet(m_window.get());
    const auto *refused = sheet ? sheet->findChild<ErrorText *>() : nullptr;
    const bool isRefusalShown = (refused && refused->isVisible()) == (m_state.formStatus != 0);
    return m_expected.isEmpty() && isFailureShown && isRefusalShown
        && (named(m_window.get(), u"Loading events…"_s) != nullptr) == m_isLoading
        && SupabaseClient::session().userId.value_or(QString())
        == (m_state.isSignedIn ? m_state.user : QString())
        && (MembersWindow::sheet(m_window.get()) != nullptr)
        == (m_state.sheet != WalkState::Sheet::None)
        && (MembersWindow::accountMenu(m_window.get()) != nullptr) == m_state.isMenuOpen
        && Finding::mark(m_window.get()) == Rows::markOf(m_state.rows);
}

QString Walk::inWords() const
{
    return u"with focus on %1%2 “%3” %4, loading %5, failed %6 (%7), sheet %8, menu %9"_s
               .arg(m_state.focusRow, m_state.focusClass, m_state.focusName)
               .arg(m_state.focusStop)
               .arg(m_isLoading)
               .arg(m_hasFailed)
               .arg(Finding::failure(m_window.get()))
               .arg(int(m_state.sheet))
               .arg(m_state.isMenuOpen)
        + u", %1 requests to come, list “%2” where “%3” is due"_s.arg(m_expected.size())
              .arg(Finding::mark(m_window.get()), Rows::markOf(m_state.rows));
}

std::optional<QString> Walk::compare()
{
    using Body = WalkState::Body;
    if (!Scene::waitFor([this] { return looksAtRest() || !m_unexplained.isEmpty(); }, m_patience)) {
        m_shown = picturesOf(m_window.get());
        return u"does not come to rest: "_s + inWords();
    }
    m_state.body = m_isLoading ? Body::Loading : m_hasFailed ? Body::Error : Body::List;
    const QDeadlineTimer deadline(lastChance);
    for (bool isLast = false;; isLast = deadline.hasExpired()) {
        Scene::settle();
        if (!m_state.isMenuOpen)
            Finding::point(m_window.get(), m_state.pointer);
        Finding::look(m_window.get(), m_state);
        if (const auto fault = judge(); fault && (isLast || !m_unexplained.isEmpty()))
            return fault;
        const auto fresh = isLast ? m_mirror.portraitAnew(m_state) : m_mirror.portraitOf(m_state);
        if (!fresh)
            return u"has no fresh one to compare with: the other process does not answer"_s;
        m_shown = picturesOf(m_window.get());
        const Portrait shown = portraitOf(m_window.get(), m_shown);
        if (shown == *fresh && !judge())
            return {};
        if (isLast)
            return differing(shown, *fresh);
        Scene::waitFor([] { return false; }, breath);
    }
}

std::optional<QString> Walk::differing(const Portrait &shown, const Portrait &fresh)
{
    m_fresh = m_mirror.picturesOf(m_state).value_or(Pictures());
    return difference(shown, fresh) + u' ' + difference(m_shown, m_fresh) + u'\n' + inWords();
}

std::optional<QString> Walk::judge() const
{
    if (!m_unexplained.isEmpty())
        return u"sends what nothing explains: "_s + m_unexplained.join(u", "_s);
    const QWidget *focus = m_window->focusWidget();
    if (!focus || !focus->isVisible())
        return u"has the keyboard focus on nothing visible"_s;
    const Sheet *sheet = MembersWindow::sheet(m_window.get());
    if (sheet && sheet != focus && !sheet->isAncestorOf(focus))
        return u"has the keyboard focus behind its sheet"_s;
    return {};
}
