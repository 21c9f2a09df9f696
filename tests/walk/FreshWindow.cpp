#include "walk/FreshWindow.h"

#include "app/ButtonStyles.h"
#include "controls/ErrorText.h"
#include "support/MembersWindow.h"
#include "walk/Finding.h"
#include "walk/Rows.h"

#include <functional>

using namespace Qt::StringLiterals;

namespace {

using Body = WalkState::Body;
using SheetKind = WalkState::Sheet;

constexpr int patience = 20'000; // ms

} // namespace

FreshWindow::FreshWindow(HttpServer &server, const WalkState &state)
    : m_server(server)
    , m_state(state)
{
    planLoads();
    m_window =
        Scene::openWindow(m_state.size, m_state.dark, [now = m_state.now] { return Instant{now}; });
    awaitFirstLoad();
    if (m_state.isDeletion)
        failToDelete();
    if (!crosses())
        chooseTab();
    // Opened before somebody signs in, since nobody can afterwards.
    if (m_state.sheet == SheetKind::Login) {
        // Nor while whoever failed to delete is remembered.
        SupabaseClient::signOut();
        SupabaseClient::clearSavedCredentials();
        Scene::settle();
        press(u"Ajouter un compte"_s);
    }
    takeSession();
    if (crosses())
        crossLoads();
    openSheet();
    if (crosses()) {
        m_server.release();
        m_state.body == Body::Error ? waitForFailure() : waitForMark(m_state.rows);
    }
    fillForm();
    Scene::settle();
    Finding::follow(m_window.get(), m_state);
    Scene::settle();
    if (auto *account = WindowTest::button(m_window.get(), u"Compte"_s);
        account && m_state.isMenuOpen)
        account->click();
    Scene::settle();
}

FreshWindow::~FreshWindow()
{
    SupabaseClient::signOut();
    SupabaseClient::clearSavedCredentials();
    m_server.answer(HttpAnswer::fin());
    m_server.release();
}

void FreshWindow::planLoads()
{
    m_server.answerWith([this](const HttpRequest &request) {
        if (m_holdsForm)
            return HttpAnswer::whole(201, "[]").whenReleased();
        if (m_refusesForm)
            return Scene::failure(m_state.formStatus, m_state.formFailure);
        if (request.target.startsWith("/auth/"))
            return Scene::signedIn(request);
        if (request.method != "GET")
            return Scene::failure(m_state.status, m_state.failure);
        ++m_loads;
        if (m_state.isDeletion)
            return Scene::success(Rows::one(u"x"_s, m_state.deleter));
        if (m_state.body == Body::Loading)
            return lastLoad().whenReleased();
        if (m_loads > 1)
            return m_loads == 2 ? lastLoad().whenReleased() : Scene::success(m_state.sheetRows);
        return lastLoad();
    });
}

HttpAnswer FreshWindow::lastLoad() const
{
    if (m_state.body == Body::Error && !m_state.isDeletion)
        return Scene::failure(m_state.status, m_state.failure);
    return Scene::success(m_state.rows);
}

void FreshWindow::awaitFirstLoad()
{
    // It forgets the remembered account as soon as it is in view.
    wait("asks for the events",
         [this] { return m_loads > 0 && named(u"Ajouter un compte"_s) != nullptr; });
    if (m_state.body == Body::Loading || m_state.isDeletion)
        return;
    wait("ends its load", [this] { return named(u"Loading events…"_s) == nullptr; });
}

/// Of an event that whoever is signed in then owns.
void FreshWindow::failToDelete()
{
    wait("shows the event", [this] { return named(u"x"_s) != nullptr; });
    if (!m_state.deleter.isEmpty())
        Scene::signIn(m_state.deleter);
    Scene::settle();
    wait("offers to delete", [this] { return named(u"Supprimer"_s) != nullptr; });
    press(u"Supprimer"_s);
    wait("asks back", [this] { return MembersWindow::sheet(m_window.get()) != nullptr; });
    if (Sheet *sheet = MembersWindow::sheet(m_window.get()))
        WindowTest::button(sheet, u"Supprimer"_s)->click();
    waitForFailure();
}

void FreshWindow::chooseTab()
{
    if (m_state.tab == 1)
        click(named(u"Passés"_s));
}

void FreshWindow::takeSession()
{
    if (m_state.isSignedIn || m_state.isSaved)
        Scene::signIn(m_state.user);
    else
        SupabaseClient::clearSavedCredentials();
    if (!m_state.isSignedIn)
        SupabaseClient::signOut();
    Scene::settle();
}

/// Two loads that cross: the list that a sheet was opened over was replaced beneath it.
bool FreshWindow::crosses() const
{
    const bool isOverRow = m_state.sheet == SheetKind::Detail || m_state.sheet == SheetKind::Edit
        || m_state.sheet == SheetKind::Delete;
    return isOverRow && (m_state.body == Body::Error || m_state.sheetRows != m_state.rows);
}

/// The window is shown what it ends with, asks for that again, and then for what the sheet was
/// opened over, which comes first.
void FreshWindow::crossLoads()
{
    for (int load = 2; load <= 3; ++load) {
        QTest::keyClick(m_window->windowHandle(), Qt::Key_F5);
        wait("asks again", [this, load] { return m_loads == load; });
    }
    wait("shows the list", [this] { return named(u"Loading events…"_s) == nullptr; });
    waitForMark(m_state.sheetRows);
    chooseTab();
}

void FreshWindow::openSheet()
{
    switch (m_state.sheet) {
    case SheetKind::None:
    case SheetKind::Login:
        return;
    case SheetKind::Add:
        return press(u"Ajouter un événement"_s);
    case SheetKind::Detail:
    case SheetKind::Edit:
    case SheetKind::Delete:
        return openSheetOverRow();
    }
}

void FreshWindow::openSheetOverRow()
{
    SectionList *list = WindowTest::shownList(m_window.get());
    if (!list)
        return;
    list->showRow(int(Finding::titles(m_window.get()).indexOf(m_state.sheetRow)));
    QWidget *row = Finding::row(m_window.get(), m_state.sheetRow);
    if (!row)
        return;
    if (m_state.sheet == SheetKind::Detail)
        return click(row, {30, 14});
    const QString button = m_state.sheet == SheetKind::Edit ? u"Modifier"_s : u"Supprimer"_s;
    click(WindowTest::button(row, button));
}

/// Refused first, if it was: what is typed after that does not show in the refusal.
void FreshWindow::fillForm()
{
    const Sheet *form = MembersWindow::sheet(m_window.get());
    auto *send = form ? form->findChild<PrimaryButton *>() : nullptr;
    if (!send)
        return;
    if (m_state.formStatus != 0) {
        m_refusesForm = true;
        for (const QString &field : {u"Email"_s, u"Mot de passe"_s})
            Finding::type(m_window.get(), field, u"x"_s);
        send->click();
        wait("refuses the form", [form] { return form->findChild<ErrorText *>()->isVisible(); });
        m_refusesForm = false;
    }
    if (m_state.isFormSent) {
        m_holdsForm = true;
        send->click();
        wait("sends the form", [send] { return !send->isEnabled(); });
    }
    for (auto it = m_state.typed.cbegin(); it != m_state.typed.cend(); ++it)
        Finding::type(m_window.get(), it.key(), it.value());
}

void FreshWindow::waitForMark(const QByteArray &rows)
{
    wait("shows its events",
         [this, mark = Rows::markOf(rows)] { return Finding::mark(m_window.get()) == mark; });
}

void FreshWindow::waitForFailure()
{
    wait("shows its failure",
         [this] { return named(Finding::failure(m_window.get())) != nullptr; });
}

void FreshWindow::wait(const char *what, const std::function<bool()> &condition)
{
    if (m_isLost || Scene::waitFor(condition, patience))
        return;
    m_isLost = true;
    qWarning("the fresh window never %s", what);
}

QWidget *FreshWindow::named(const QString &name) const
{
    return name.isEmpty() ? nullptr : WindowTest::named(m_window.get(), name);
}

void FreshWindow::click(QWidget *widget, QPoint at)
{
    if (!widget)
        return;
    const QPoint point = at.isNull() ? widget->rect().center() : at;
    const QPoint place = widget->mapTo(m_window.get(), point);
    Finding::point(m_window.get(), place);
    QTest::mouseClick(m_window->windowHandle(), Qt::LeftButton, {}, place);
    QCoreApplication::processEvents();
}

void FreshWindow::press(const QString &name)
{
    click(WindowTest::button(m_window.get(), name));
}
