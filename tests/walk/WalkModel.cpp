// What ought to come of what a walk does.

#include "walk/Rows.h"
#include "walk/Scene.h"
#include "walk/Walk.h"

#include "app/ButtonStyles.h"
#include "sectionlist/SectionListRow.h"

#include <QAbstractButton>

#include <algorithm>
#include <optional>
#include <utility>

using namespace Qt::StringLiterals;

using SheetKind = WalkState::Sheet;

namespace {

constexpr qsizetype mostHeld = 3;

} // namespace

void Walk::effect(QWidget *target)
{
    if (m_state.sheet != SheetKind::None)
        return effectInSheet(target);
    QString title;
    QWidget *pressed = nullptr;
    for (QWidget *widget = target; widget; widget = widget->parentWidget()) {
        if (!pressed && qobject_cast<QAbstractButton *>(widget))
            pressed = widget;
        if (qobject_cast<SectionListRow *>(widget)) {
            title = widget->accessibleName();
            break;
        }
    }
    const QString name = pressed ? pressed->accessibleName() : QString();
    if (!title.isEmpty()) {
        openSheet(name == u"Modifier"_s        ? SheetKind::Edit
                      : name == u"Supprimer"_s ? SheetKind::Delete
                                               : SheetKind::Detail,
                  title);
    } else if (name == u"Ajouter un compte"_s) {
        openSheet(SheetKind::Login, {});
    } else if (name == u"Ajouter un événement"_s) {
        openSheet(SheetKind::Add, {});
    } else if (name == u"À venir"_s) {
        m_state.tab = 0;
    } else if (name == u"Passés"_s) {
        m_state.tab = 1;
    } else if (name == u"Compte"_s) {
        m_state.isMenuOpen = true;
    }
}

void Walk::effectInSheet(QWidget *target)
{
    const auto *button = qobject_cast<QAbstractButton *>(target);
    const QString name = button ? button->text() : QString();
    if (name == u"Fermer"_s || name == u"Annuler"_s)
        closeSheet();
    else if (m_state.sheet == SheetKind::Delete && name == u"Supprimer"_s)
        confirmDeletion();
    else if (m_state.sheet == SheetKind::Login && qobject_cast<const PrimaryButton *>(target))
        submitAccount();
    else if (qobject_cast<const PrimaryButton *>(target) && button->isEnabled())
        submitEvent();
}

void Walk::effectInMenu(const QString &name)
{
    m_state.isMenuOpen = false;
    if (name == u"Se connecter"_s)
        expect("POST /auth/v1/token", {});
    m_state.isSignedIn = name == u"Se connecter"_s;
    if (name == u"Supprimer le compte"_s)
        m_state.isSaved = false;
}

void Walk::openSheet(SheetKind sheet, const QString &row)
{
    ++m_form;
    m_state.sheet = sheet;
    m_state.sheetRow = row;
    m_state.sheetRows = row.isEmpty() ? QByteArray() : m_state.rows;
}

void Walk::closeSheet()
{
    m_state.sheet = SheetKind::None;
    m_state.sheetRow.clear();
    m_state.sheetRows.clear();
    m_state.typed.clear();
    m_state.isFormSent = false;
    refuseForm(0, 0);
}

void Walk::refuseForm(int status, int number)
{
    m_state.formStatus = status;
    m_state.formFailure = number;
}

void Walk::submitEvent()
{
    if (!m_state.isSignedIn)
        return refuseForm(-1, 0);
    const int status = std::exchange(m_nextStatus, 0);
    const int number = ++m_loads;
    // One in two is slow by itself.
    const bool isSlow = std::exchange(m_nextIsHeld, false) || number % 2 == 0;
    const bool isHeld = isSlow && m_held.size() < mostHeld;
    const HttpAnswer answer =
        status == 0 ? HttpAnswer::whole(201, "[]") : Scene::failure(status, number);
    expect(m_state.sheet == SheetKind::Add ? "POST /rest/v1/events" : "PATCH /rest/v1/events",
           isHeld ? answer.whenReleased() : answer);
    const Load sent{{}, status, number, m_form};
    refuseForm(0, 0);
    m_state.isFormSent = true;
    if (isHeld)
        m_held.append(sent);
    else
        finishForm(sent);
}

/// The form may be gone by now, and another open.
void Walk::finishForm(const Load &sent)
{
    const bool isOpen = m_state.sheet != SheetKind::None && sent.form == m_form;
    if (isOpen)
        m_state.isFormSent = false;
    if (sent.status != 0) {
        if (isOpen)
            refuseForm(sent.status, sent.number);
        return;
    }
    if (isOpen)
        closeSheet();
    // A window that loads under a sheet over a row is no state that a fresh one comes to.
    m_nextIsHeld = m_nextIsHeld && m_state.sheet == SheetKind::None;
    startLoad();
}

void Walk::submitAccount()
{
    const int status = std::exchange(m_nextStatus, 0);
    const int number = ++m_loads;
    expect("POST /auth/v1/signup",
           status == 0 ? std::nullopt : std::optional(Scene::failure(status, number)));
    if (status != 0)
        return refuseForm(status, number);
    m_state.user = m_state.typed.value(u"Email"_s).section(u'@', 0, 0);
    m_state.isSignedIn = m_state.isSaved = true;
    closeSheet();
}

void Walk::confirmDeletion()
{
    const int status = m_state.isSignedIn ? m_nextStatus : 0;
    const int number = ++m_loads;
    if (m_state.isSignedIn)
        expect("DELETE /rest/v1/events",
               status == 0 ? HttpAnswer::whole(204, "") : Scene::failure(status, number));
    closeSheet();
    if (m_state.isSignedIn && status == 0)
        return startLoad();
    m_nextStatus = 0;
    m_hasFailed = true;
    m_state.status = status;
    m_state.failure = number;
    m_state.isDeletion = true;
    m_state.deleter = m_state.isSignedIn ? m_state.user : QString();
}

void Walk::startLoad()
{
    m_isLoading = true;
    m_hasFailed = false;
    m_state.status = m_state.failure = 0;
    m_state.isDeletion = false;
    m_state.deleter.clear();
    const Load load{nextRows(), std::exchange(m_nextStatus, 0), m_loads, 0};
    const bool isHeld = std::exchange(m_nextIsHeld, false) && m_held.size() < mostHeld;
    const HttpAnswer answer =
        load.status == 0 ? Scene::success(load.rows) : Scene::failure(load.status, load.number);
    expect("GET /rest/v1/events", isHeld ? answer.whenReleased() : answer);
    if (isHeld)
        m_held.append(load);
    else
        finishLoad(load);
}

/// None twice alike, or nothing would tell when the next has come.
QByteArray Walk::nextRows()
{
    const unsigned variant = m_nextRows++;
    ++m_loads;
    const bool hasNone = m_state.rows == Rows::none
        || std::any_of(m_held.begin(), m_held.end(),
                       [](const Load &load) { return load.rows == Rows::none; });
    return Rows::isNone(variant) && !hasNone ? QByteArray(Rows::none)
                                             : Rows::reply(variant, unsigned(m_loads));
}

void Walk::finishLoad(const Load &load)
{
    if (load.form != 0)
        return finishForm(load);
    m_isLoading = false;
    if (load.status == 0) {
        m_state.rows = load.rows;
        return;
    }
    m_hasFailed = true;
    m_state.status = load.status;
    m_state.failure = load.number;
    m_state.isDeletion = false;
    m_state.deleter.clear();
}

void Walk::expect(const QByteArray &request, const std::optional<HttpAnswer> &answer)
{
    m_expected.append({request, answer});
}

HttpAnswer Walk::answer(const HttpRequest &request)
{
    const QByteArray asked = request.method + ' ' + request.target.split('?').first();
    if (m_expected.isEmpty() || m_expected.constFirst().request != asked) {
        m_unexplained.append(QString::fromUtf8(asked));
        return Scene::failure(500, 0);
    }
    const Expected expected = m_expected.takeFirst();
    return expected.answer ? *expected.answer : Scene::signedIn(request);
}
