#pragma once

#include "account/CredentialsStore.h"
#include "backend/SupabaseClient.h"
#include "controls/Popover.h"
#include "controls/Sheet.h"
#include "sectionlist/SectionListAccessible.h"
#include "support/Await.h"
#include "support/Sent.h"
#include "support/ViewMain.h"
#include "support/WindowTest.h"

#include <QLineEdit>

#include <optional>

using namespace Qt::StringLiterals;

/// What tests of the members' side of the window share: a service with accounts, and the sheets as
/// a person sees them.
namespace MembersWindow {

/// A service that has these rows, signs anybody in as `userId` and accepts every write.
struct Service {
    QJsonArray rows;
    QByteArray userId = "moi";
    /// When set, what the writes are answered.
    std::optional<HttpAnswer> toWrites;
    /// When set, what sign-in and sign-up are answered.
    std::optional<HttpAnswer> toAccounts;

    HttpAnswer answer(const HttpRequest &request) const
    {
        if (request.target.startsWith("/auth/"))
            return toAccounts.value_or(granting(userId));
        if (request.method == "GET")
            return WindowTest::reply(rows);
        return toWrites.value_or(HttpAnswer::whole(204, ""));
    }
};

/// How many requests of this method, to a target that begins so, have come.
inline int count(const HttpServer &server, const QByteArray &method,
                 const QByteArray &target = "/rest/")
{
    int found = 0;
    for (const HttpRequest &request : server.requests())
        found += request.method == method && request.target.startsWith(target) ? 1 : 0;
    return found;
}

/// The open sheet, or null.
inline Sheet *sheet(const QWidget *window)
{
    const auto sheets = window->findChildren<Sheet *>();
    for (Sheet *candidate : sheets) {
        if (candidate->isVisible())
            return candidate;
    }
    return nullptr;
}

/// The open account menu, or null.
inline Popover *accountMenu(const QWidget *window)
{
    const auto popovers = window->findChildren<Popover *>();
    for (Popover *candidate : popovers) {
        if (candidate->isVisible())
            return candidate;
    }
    return nullptr;
}

/// The entry field of this name in a form, or null. (Its caption has the same.)
inline QLineEdit *field(const QWidget *form, const QString &name)
{
    const auto fields = form->findChildren<QLineEdit *>();
    for (QLineEdit *candidate : fields) {
        if (candidate->isVisible() && candidate->accessibleName() == name)
            return candidate;
    }
    return nullptr;
}

/// The lower of the form's two "Créer un compte": the upper one chooses the mode.
inline QAbstractButton *createAccount(const QWidget *form)
{
    QAbstractButton *lowest = nullptr;
    const auto buttons = form->findChildren<QAbstractButton *>();
    for (QAbstractButton *candidate : buttons) {
        const bool isSo = candidate->accessibleName() == u"Créer un compte"_s
            || candidate->text() == u"Créer un compte"_s;
        if (isSo
            && (!lowest
                || candidate->mapToGlobal(QPoint()).y() > lowest->mapToGlobal(QPoint()).y()))
            lowest = candidate;
    }
    return lowest;
}

inline void click(const QWidget *within, const QString &name)
{
    QAbstractButton *found = WindowTest::button(within, name);
    QVERIFY2(found, qPrintable(u"no button "_s + name));
    QTest::mouseClick(found, Qt::LeftButton);
}

inline void signInAs(const QString &email)
{
    QCOMPARE(outcomeOf(SupabaseClient::signIn(email, u"secret"_s)).failure(), QString());
}

} // namespace MembersWindow
