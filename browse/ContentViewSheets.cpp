// What the window opens over itself: its sheets, and the menu of the account.

#include "account/AccountMenuView.h"
#include "account/LoginView.h"
#include "backend/SupabaseClient.h"
#include "backend/Unattended.h"
#include "browse/ContentView.h"
#include "browse/DeleteConfirmation.h"
#include "browse/EventDetailView.h"
#include "controls/Popover.h"
#include "controls/Sheet.h"
#include "editor/AddEventView.h"

#include <optional>
#include <utility>

namespace {

/// The sheet about an event, by that event; none without it.
std::optional<QString> idOf(const std::optional<Event> &event)
{
    return event ? std::optional(event->id) : std::nullopt;
}

/// The sheet or menu of which there is but one.
std::optional<QString> onlyOneIf(bool isAskedFor)
{
    return isAskedFor ? std::optional(QString()) : std::nullopt;
}

} // namespace

void ContentView::renderSheets()
{
    const auto clear = [this](auto State::*member) {
        return [this, member] {
            m_state.*member = {};
            render();
            // The row that had it may be that of another event by now.
            if (const auto id = std::exchange(m_eventBefore, {}))
                putBackFocus(*id);
        };
    };
    const auto clearEvent = [this](std::optional<Event> State::*member) {
        return [this, member] {
            const QString id = (m_state.*member)->id;
            (m_state.*member).reset();
            render();
            putBackFocus(id);
        };
    };
    const auto form = [this](const std::optional<Event> &event) {
        return new AddEventView(
            event, [window = QPointer(this)] { return reloadAfterSave(window); }, this, m_now);
    };
    m_detail.keep(
        idOf(m_state.selectedEvent),
        [this] { return new EventDetailView(*m_state.selectedEvent, Calendar::current(), this); },
        clearEvent(&State::selectedEvent));
    m_login.keep(
        onlyOneIf(m_state.isLoginPresented),
        [this] { return new LoginView(m_state.loginMode, this); }, clear(&State::isLoginPresented));
    m_add.keep(
        onlyOneIf(m_state.isAddPresented), [form] { return form({}); },
        clear(&State::isAddPresented));
    m_edit.keep(
        idOf(m_state.eventToEdit), [this, form] { return form(m_state.eventToEdit); },
        clearEvent(&State::eventToEdit));
    m_confirmation.keep(
        idOf(m_state.eventToDelete),
        [this] {
            return new DeleteConfirmation(
                [this] {
                    if (m_state.eventToDelete)
                        runUnattended(deleteEvent(*m_state.eventToDelete));
                },
                this);
        },
        clearEvent(&State::eventToDelete));
}

void ContentView::renderAccountMenu()
{
    m_accountMenu.keep(
        onlyOneIf(m_state.isAccountMenuPresented),
        [this] {
            auto *menu = new Popover(m_header->accountButton());
            menu->setContent(makeAccountMenu());
            return menu;
        },
        [this] { leaveAccountMenu(); });
}

QWidget *ContentView::makeAccountMenu()
{
    return new AccountMenuView({
        .isSignedIn = m_state.isSignedIn,
        .hasSavedCredentials = m_state.hasSavedCredentials,
        .email = savedEmailDisplay(),
        .onConnect =
            [this] {
                connectAgain();
                leaveAccountMenu();
            },
        .onLogout =
            [this] {
                SupabaseClient::signOut();
                leaveAccountMenu();
            },
        .onRemove =
            [this] {
                SupabaseClient::signOut();
                SupabaseClient::clearSavedCredentials();
                leaveAccountMenu();
            },
    });
}

void ContentView::leaveAccountMenu()
{
    m_state.isAccountMenuPresented = false;
    render();
}
