#pragma once

#include "account/AuthMode.h"
#include "browse/EventOrder.h"
#include "browse/Header.h"
#include "browse/Showing.h"
#include "platform/Now.h"
#include "platform/Worker.h"

#include <QCoro/QCoroTask>
#include <QPointer>
#include <QWidget>

#include <optional>

class BusyIndicator;
class ErrorText;
class EventList;
class Pane;
class Popover;
class Sheet;
class QStackedLayout;
class TabView;

/// The main window: a header above the events, coming and past ones each in a tab, and what members
/// do: their account, their events.
///
/// All that changes while it is open is in one State; render() makes the widgets agree with it. It
/// follows the process's session: what one window signs in or forgets, all windows show.
class ContentView : public QWidget {
    Q_OBJECT

public:
    /// `now` tells which day it is.
    explicit ContentView(QWidget *parent = nullptr, Now now = Instant::now);

    /// Loads and shows the events. Loads may overlap: the last one to finish is shown. Never fails
    /// to its caller; a failure is shown in place of the list.
    QCoro::Task<void> loadEvents();
    /// Deletes the event, then loads the events. Never fails to its caller; a failure is shown in
    /// place of the list.
    QCoro::Task<void> deleteEvent(Event event);

    QSize sizeHint() const override;

protected:
    void changeEvent(QEvent *event) override;
    void showEvent(QShowEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    struct State {
        DatedEvents events; ///< as last loaded
        bool isLoading = false;
        std::optional<QString> errorMessage; ///< of the last failed load or delete
        std::optional<Event> selectedEvent; ///< its detail is open
        bool isLoginPresented = false;
        bool isAddPresented = false;
        bool isSignedIn = false;
        std::optional<QString> currentUserId;
        std::optional<Event> eventToEdit;
        std::optional<Event> eventToDelete; ///< awaits its confirmation
        bool didAttemptAutoLogin = false;
        bool hasSavedCredentials = false;
        std::optional<QString> savedEmail; ///< of the remembered record
        bool isAccountMenuPresented = false;
        AuthMode loginMode = AuthMode::signIn;
        bool didPurgeSavedCredentials = false;
    };
    /// Where the keyboard was before the list gave way to the busy indicator.
    struct KeptFocus {
        QPointer<QWidget> widget;
        std::optional<QString> eventId;
        bool hadRing = false;
    };

    Header::Actions headerActions();
    void addShortcuts();
    QCoro::Task<void> appear();
    void reload();
    static QCoro::Task<void> reloadAfterSave(QPointer<ContentView> window);
    void finishLoad(DatedEvents events);
    void failLoad(const QString &description);
    void followSession();
    void connectAgain();

    void rehearse(int part);
    void render();
    void renderEvents();
    void renderSheets();
    /// The e-mail address beside the account button: the session's, else the remembered one.
    std::optional<QString> savedEmailDisplay() const;
    void renderAccountMenu();
    QWidget *makeAccountMenu();
    void leaveAccountMenu();
    void putBackFocus(const QString &eventId);
    void showBody(QWidget *part);
    EventList *shownList() const;

    const Now m_now;
    State m_state;
    std::optional<Instant> m_shownDay; ///< the start of the day that the lists are split at
    bool m_hasRehearsed = false; ///< the list, for speed
    KeptFocus m_keptFocus;
    std::optional<QString> m_eventBefore; ///< had the focus when a form of no event was opened
    Worker m_worker; ///< orders large lists and frees them

    Header *m_header;
    QWidget *m_body;
    QStackedLayout *m_parts;
    BusyIndicator *m_busy;
    ErrorText *m_error;
    Pane *m_pane;
    TabView *m_tabs;
    EventList *m_upcoming;
    EventList *m_past;
    Showing<Sheet> m_detail;
    Showing<Sheet> m_login;
    Showing<Sheet> m_add;
    Showing<Sheet> m_edit;
    Showing<Sheet> m_confirmation;
    Showing<Popover> m_accountMenu;
};
