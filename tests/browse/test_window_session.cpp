// The window and the session: start-up, account menu, sign-in sheet, whose events are whose.

#include "browse/EventRow.h"
#include "look/FocusRing.h"
#include "support/MembersWindow.h"

#include <QFile>
#include <QStandardPaths>

#include <algorithm>
#include <memory>
#include <utility>

using namespace Qt::StringLiterals;
using namespace WindowTest;
using namespace MembersWindow;

namespace {

const QString addAccount = u"Ajouter un compte"_s;
const QString addEvent = u"Ajouter un événement"_s;
const QString forget = u"Supprimer le compte"_s;

QString accountLabel(const QWidget *window)
{
    return named(window, u"Compte"_s)->accessibleDescription();
}

bool showsButtons(const QWidget *window, const QString &event)
{
    const QWidget *row = named(window, event);
    return row && button(row, u"Modifier"_s) && button(row, u"Supprimer"_s);
}

} // namespace

class TestWindowSession : public QObject {
    Q_OBJECT

    HttpServer &m_server;
    Service m_service;

    int sent(const QByteArray &method, const QByteArray &target) const
    {
        return count(m_server, method, target) - m_before.value(method + target);
    }
    void startCounting()
    {
        for (const QByteArray &key : {"POST/auth/"_ba, "GET/rest/"_ba}) {
            const qsizetype slash = key.indexOf('/');
            m_before[key] = count(m_server, key.first(slash), key.sliced(slash));
        }
    }
    QHash<QByteArray, int> m_before;

    /// What a program leaves that is killed while it remembers somebody.
    static QString leftBehind()
    {
        const QString path = QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation)
            + u"/aMorvelle/aMorvelle.credentials.draft-Ab3dEf"_s;
        QFile file(path);
        if (!file.open(QIODevice::WriteOnly) || file.write("secr") != 4)
            qFatal("cannot write a temporary file");
        return path;
    }

    std::unique_ptr<ContentView> windowWith(const QString &event)
    {
        auto window = shownWindow();
        return window && QTest::qWaitFor([&] { return named(window.get(), event) != nullptr; })
            ? std::move(window)
            : nullptr;
    }

public:
    explicit TestWindowSession(HttpServer &server)
        : m_server(server)
    {
    }

private Q_SLOTS:
    void init()
    {
        SupabaseClient::signOut();
        SupabaseClient::clearSavedCredentials();
        m_service = {};
        m_service.rows = {row(u"fête"_s, 3)};
        m_server.answerWith(
            [this](const HttpRequest &request) { return m_service.answer(request); });
        startCounting();
    }

    void whatWasRememberedIsForgottenBeforeItIsTried()
    {
        CredentialsStore::save({u"a@b.fr"_s, u"p"_s});
        const QString draft = leftBehind();
        const auto window = windowWith(u"fête"_s);
        QVERIFY(window);
        QVERIFY(!CredentialsStore::loadCredentials());
        QVERIFY(!QFile::exists(draft));
        QCOMPARE(sent("POST", "/auth/"), 0);
        QVERIFY(button(window.get(), addAccount));
        QVERIFY(!button(window.get(), addEvent));
    }

    void aSecondAppearanceOnlyLoadsAgain()
    {
        const auto window = windowWith(u"fête"_s);
        QVERIFY(window);
        signInAs(u"a@b.fr"_s);
        window->hide();
        window->show();
        QTRY_COMPARE(sent("GET", "/rest/"), 2);
        QCOMPARE(sent("POST", "/auth/"), 1);
        QCOMPARE(CredentialsStore::loadCredentials(), (Credentials{u"a@b.fr"_s, u"secret"_s}));
    }

    void aFirstSignInShowsInTheHeaderAndInTheMenu()
    {
        const auto window = windowWith(u"fête"_s);
        QVERIFY(window);
        QCOMPARE(accountLabel(window.get()), QString());
        signInAs(u"a@b.fr"_s);
        // The record is saved right after the announcement; the window has seen it all the same.
        QTRY_VERIFY(button(window.get(), addEvent));
        QVERIFY(!button(window.get(), addAccount));
        QCOMPARE(accountLabel(window.get()), u"a@b.fr"_s);
        click(window.get(), u"Compte"_s);
        QVERIFY(accountMenu(window.get()));
        QVERIFY(button(accountMenu(window.get()), u"Se déconnecter"_s));
        QVERIFY(button(accountMenu(window.get()), forget));
    }

    void aFurtherWindowShowsAtOnceWhoIsSignedIn()
    {
        signInAs(u"a@b.fr"_s);
        const ContentView window;
        const auto buttons = window.findChildren<QAbstractButton *>();
        const auto isThere = [&](const QString &name) {
            return std::ranges::any_of(buttons, [&](const QAbstractButton *button) {
                return button->text() == name && button->isVisibleTo(&window);
            });
        };
        QVERIFY(isThere(addEvent));
        QVERIFY(!isThere(addAccount));
    }

    void anEmptyTokenIsATokenToo()
    {
        m_service.toAccounts = HttpAnswer::whole(200, R"({"access_token":"","user":{"id":"moi"}})");
        const auto window = windowWith(u"fête"_s);
        QVERIFY(window);
        signInAs(u"a@b.fr"_s);
        QTRY_VERIFY(button(window.get(), addEvent));
        QVERIFY(!button(window.get(), addAccount));
        const auto further = windowWith(u"fête"_s);
        QVERIFY(further && button(further.get(), addEvent));
    }

    void signingInAndOutLoadsNothingAnew()
    {
        const auto window = windowWith(u"fête"_s);
        QVERIFY(window);
        signInAs(u"a@b.fr"_s);
        QTRY_VERIFY(button(window.get(), addEvent));
        SupabaseClient::signOut();
        QTRY_VERIFY(!button(window.get(), addEvent));
        QCOMPARE(sent("GET", "/rest/"), 1);
    }

    void theSessionsEmailGoesBeforeTheRememberedOne_data()
    {
        QTest::addColumn<QByteArray>("answer");
        QTest::addColumn<QString>("shown");
        QTest::newRow("the service's own spelling")
            << R"({"access_token":"t","user":{"id":"moi","email":"A@B.fr"}})"_ba << u"A@B.fr"_s;
        QTest::newRow("an empty one is none")
            << R"({"access_token":"t","user":{"id":"moi","email":""}})"_ba << u"a@b.fr"_s;
    }

    void theSessionsEmailGoesBeforeTheRememberedOne()
    {
        QFETCH(QByteArray, answer);
        m_service.toAccounts = HttpAnswer::whole(200, answer);
        const auto window = windowWith(u"fête"_s);
        QVERIFY(window);
        signInAs(u"a@b.fr"_s);
        QTRY_VERIFY(!accountLabel(window.get()).isEmpty());
        QTEST(accountLabel(window.get()), "shown");
    }

    void onlyOnesOwnEventsShowTheirButtons_data()
    {
        QTest::addColumn<QString>("owner");
        QTest::addColumn<QByteArray>("user");
        QTest::addColumn<bool>("shows");
        QTest::newRow("one's own") << u"moi"_s << "moi"_ba << true;
        QTest::newRow("somebody else's") << u"elle"_s << "moi"_ba << false;
        QTest::newRow("somebody's, signed out") << u"elle"_s << QByteArray() << false;
        QTest::newRow("nobody's") << QString() << "moi"_ba << false;
        QTest::newRow("nobody's, signed out") << QString() << QByteArray() << true;
    }

    void onlyOnesOwnEventsShowTheirButtons()
    {
        QFETCH(QString, owner);
        QFETCH(QByteArray, user);
        QFETCH(bool, shows);
        m_service.userId = user;
        m_service.rows = {
            row(u"fête"_s, 3, owner.isNull() ? QJsonObject() : QJsonObject{{u"user_id"_s, owner}})};
        const auto window = windowWith(u"fête"_s);
        QVERIFY(window);
        if (!user.isEmpty()) {
            signInAs(u"a@b.fr"_s);
            QTRY_VERIFY(button(window.get(), addEvent));
        }
        QCOMPARE(showsButtons(window.get(), u"fête"_s), shows);
    }

    void signingInAsAnotherChangesTheButtonsAtOnce()
    {
        m_service.rows = {row(u"mine"_s, 3, {{u"user_id"_s, u"moi"_s}}),
                          row(u"hers"_s, 4, {{u"user_id"_s, u"elle"_s}})};
        const auto window = windowWith(u"hers"_s);
        QVERIFY(window);
        signInAs(u"a@b.fr"_s);
        QTRY_VERIFY(showsButtons(window.get(), u"mine"_s));
        QVERIFY(!showsButtons(window.get(), u"hers"_s));
        m_service.userId = "elle";
        signInAs(u"c@d.fr"_s);
        QTRY_VERIFY(showsButtons(window.get(), u"hers"_s));
        QVERIFY(!showsButtons(window.get(), u"mine"_s));
        QCOMPARE(sent("GET", "/rest/"), 1);
    }

    void theMenuSignsOutAndInAgain()
    {
        const auto window = windowWith(u"fête"_s);
        QVERIFY(window);
        signInAs(u"a@b.fr"_s);
        QTRY_VERIFY(button(window.get(), addEvent));
        click(window.get(), u"Compte"_s);
        click(accountMenu(window.get()), u"Se déconnecter"_s);
        QVERIFY(!accountMenu(window.get()));
        QTRY_VERIFY(!button(window.get(), addEvent));
        QVERIFY(!SupabaseClient::session().accessToken);
        // Remembered still.
        QVERIFY(!button(window.get(), addAccount));
        QCOMPARE(accountLabel(window.get()), u"a@b.fr"_s);

        click(window.get(), u"Compte"_s);
        click(accountMenu(window.get()), u"Se connecter"_s);
        QVERIFY(!accountMenu(window.get()));
        QTRY_VERIFY(button(window.get(), addEvent));
        QCOMPARE(sent("POST", "/auth/"), 2);
        const HttpRequest &request = m_server.requests().last();
        QCOMPARE(request.target, "/auth/v1/token?grant_type=password");
        QVERIFY(request.body.contains("secret"));
    }

    void aRefusalOfTheMenusSignInIsSilent()
    {
        const auto window = windowWith(u"fête"_s);
        QVERIFY(window);
        signInAs(u"a@b.fr"_s);
        SupabaseClient::signOut();
        m_service.toAccounts = HttpAnswer::whole(400, R"({"error":"no"})");
        QTRY_VERIFY(!button(window.get(), addAccount));
        click(window.get(), u"Compte"_s);
        click(accountMenu(window.get()), u"Se connecter"_s);
        QTRY_COMPARE(sent("POST", "/auth/"), 2);
        QTest::qWait(50);
        QVERIFY(named(window.get(), u"fête"_s));
        QVERIFY(!sheet(window.get()));
        QVERIFY(!button(window.get(), addEvent));
        QVERIFY(CredentialsStore::loadCredentials());
    }

    void forgettingTheAccountSignsOutAndOffersToAddOneAgain()
    {
        const auto window = windowWith(u"fête"_s);
        QVERIFY(window);
        signInAs(u"a@b.fr"_s);
        QTRY_VERIFY(!button(window.get(), addAccount));
        const QString draft = leftBehind();
        click(window.get(), u"Compte"_s);
        click(accountMenu(window.get()), forget);
        QVERIFY(!QFile::exists(draft));
        QVERIFY(!accountMenu(window.get()));
        QTRY_VERIFY(button(window.get(), addAccount));
        QVERIFY(!button(window.get(), addEvent));
        QCOMPARE(accountLabel(window.get()), QString());
        QVERIFY(!CredentialsStore::loadCredentials());
        QVERIFY(!SupabaseClient::session().accessToken);
    }

    void theMenuFollowsTheSessionWhileItIsOpen()
    {
        const auto window = windowWith(u"fête"_s);
        QVERIFY(window);
        click(window.get(), u"Compte"_s);
        QVERIFY(!button(accountMenu(window.get()), forget));
        signInAs(u"a@b.fr"_s);
        QTRY_VERIFY(button(accountMenu(window.get()), forget));
        QTest::keyClick(accountMenu(window.get()), Qt::Key_Escape);
        QVERIFY(!accountMenu(window.get()));
    }

    void theMenuOpensAgainAfterItWasLeft()
    {
        const auto window = windowWith(u"fête"_s);
        QVERIFY(window);
        for (int i = 0; i < 3; ++i) {
            click(window.get(), u"Compte"_s);
            QVERIFY(accountMenu(window.get()));
            QTest::keyClick(accountMenu(window.get()), Qt::Key_Escape);
            QVERIFY(!accountMenu(window.get()));
        }
    }

    void aSecondWindowForgetsTheRecordForAll()
    {
        const auto first = windowWith(u"fête"_s);
        QVERIFY(first);
        signInAs(u"a@b.fr"_s);
        QTRY_VERIFY(!button(first.get(), addAccount));
        const auto second = windowWith(u"fête"_s);
        QVERIFY(second);
        for (const auto *window : {first.get(), second.get()}) {
            QTRY_VERIFY(button(window, addAccount));
            QVERIFY(button(window, addEvent));
            QCOMPARE(accountLabel(window), u"a@b.fr"_s);
        }
    }

    void addingAnAccountOpensTheFormForANewOne()
    {
        const auto window = windowWith(u"fête"_s);
        QVERIFY(window);
        click(window.get(), addAccount);
        QVERIFY(sheet(window.get()));
        QVERIFY(button(sheet(window.get()), u"Créer un compte"_s));
        QVERIFY(!button(sheet(window.get()), u"Se connecter"_s));
        click(sheet(window.get()), u"Annuler"_s);
        QVERIFY(!sheet(window.get()));
        QCOMPARE(sent("POST", "/auth/"), 0);
        // It opens afresh each time.
        click(window.get(), addAccount);
        QVERIFY(sheet(window.get()));
        QTest::keyClick(sheet(window.get()), Qt::Key_Escape);
        QVERIFY(!sheet(window.get()));
    }

    void aNewMemberIsSignedInWhenTheFormHasClosed_data()
    {
        QTest::addColumn<bool>("byKeyboard");
        QTest::newRow("by mouse") << false;
        QTest::newRow("by keyboard") << true;
    }

    void aNewMemberIsSignedInWhenTheFormHasClosed()
    {
        QFETCH(bool, byKeyboard);
        const auto window = windowWith(u"fête"_s);
        QVERIFY(window);
        QAbstractButton *open = button(window.get(), addAccount);
        if (byKeyboard) {
            button(window.get(), u"Compte"_s)->setFocus(Qt::OtherFocusReason);
            QTest::keyClick(button(window.get(), u"Compte"_s), Qt::Key_Backtab);
            QTest::keyClick(open, Qt::Key_Space);
        } else {
            QTest::mouseClick(open, Qt::LeftButton);
        }
        QTRY_VERIFY(sheet(window.get()) && sheet(window.get())->isActiveWindow());
        const Sheet *form = sheet(window.get());
        QTest::keyClicks(field(form, u"Email"_s), u"a@b.fr"_s);
        QTest::keyClicks(field(form, u"Mot de passe"_s), u"secret"_s);
        QTest::mouseClick(createAccount(form), Qt::LeftButton);
        QTRY_VERIFY(!sheet(window.get()));
        QTRY_VERIFY(button(window.get(), addEvent));
        QVERIFY(!button(window.get(), addAccount));
        QCOMPARE(m_server.requests().last().target, "/auth/v1/signup");
        QCOMPARE(sent("GET", "/rest/"), 1);

        // The button that had the focus is gone: it went on, with a ring only for the keyboard.
        QTRY_VERIFY(button(window.get(), u"Compte"_s)->hasFocus());
        const auto rings = window->findChildren<FocusRing *>();
        const bool isRinged = std::any_of(rings.begin(), rings.end(),
                                          [](const auto *ring) { return ring->isVisible(); });
        QCOMPARE(isRinged, byKeyboard);
    }
};

int main(int argc, char *argv[])
{
    return runWithService<TestWindowSession>(argc, argv, installSectionListAccessibility);
}

#include "test_window_session.moc"
