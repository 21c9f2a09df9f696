// A key that is held down repeats itself; what it does to the window happens once.

#include "controls/LinkLabel.h"
#include "support/MembersWindow.h"
#include "support/Typing.h"

#include <QDesktopServices>

#include <functional>
#include <memory>
#include <utility>

using namespace Qt::StringLiterals;
using namespace WindowTest;
using namespace MembersWindow;

namespace {

constexpr int repetitions = 5;

/// Holds the keys of a shortcut down for a while. `window` gives the one that has the keyboard,
/// which may change under it.
void holdShortcut(const std::function<QWidget *()> &window, Qt::Key key,
                  Qt::KeyboardModifiers modifiers)
{
    for (int i = 0; i <= repetitions; ++i)
        QTest::simulateEvent(window(), true, key, modifiers, {}, i > 0);
    QTest::simulateEvent(window(), false, key, modifiers, {}, false);
}

/// Holds a key down on whatever has the keyboard, now and after what the key has brought about.
void holdOnFocus(Qt::Key key)
{
    QTest::keyPress(QApplication::focusWidget(), key);
    for (int i = 0; i < repetitions; ++i) {
        QTest::qWait(20);
        repeat(QApplication::focusWidget(), key, 1);
    }
    QTest::keyRelease(QApplication::focusWidget(), key);
}

/// Takes the pages that would go to the desktop.
class Desktop : public QObject {
    Q_OBJECT

public:
    Desktop() { QDesktopServices::setUrlHandler(u"https"_s, this, "open"); }
    ~Desktop() override { QDesktopServices::unsetUrlHandler(u"https"_s); }
    int opened = 0;

public Q_SLOTS:
    void open(const QUrl &) { ++opened; }
};

} // namespace

class TestWindowHeldKeys : public QObject {
    Q_OBJECT

    HttpServer &m_server;
    Service m_service;

    std::unique_ptr<ContentView> window() const
    {
        auto window = shownWindow();
        return window && QTest::qWaitFor([&] { return named(window.get(), u"fête"_s) != nullptr; })
            ? std::move(window)
            : nullptr;
    }

public:
    explicit TestWindowHeldKeys(HttpServer &server)
        : m_server(server)
    {
    }

private Q_SLOTS:
    void init()
    {
        SupabaseClient::signOut();
        SupabaseClient::clearSavedCredentials();
        m_service = {};
        m_service.rows = {row(u"fête"_s, 3, {{u"link"_s, u"https://exemple.fr"_s}})};
        m_server.answerWith(
            [this](const HttpRequest &request) { return m_service.answer(request); });
    }

    void oneLoadForOneReload_data()
    {
        QTest::addColumn<Qt::Key>("key");
        QTest::addColumn<Qt::KeyboardModifiers>("modifiers");
        QTest::newRow("F5") << Qt::Key_F5 << Qt::KeyboardModifiers(Qt::NoModifier);
        QTest::newRow("Ctrl+R") << Qt::Key_R << Qt::KeyboardModifiers(Qt::ControlModifier);
    }

    void oneLoadForOneReload()
    {
        QFETCH(Qt::Key, key);
        QFETCH(Qt::KeyboardModifiers, modifiers);
        const auto window = this->window();
        QVERIFY(window);
        const int before = count(m_server, "GET");
        holdShortcut([&] { return window.get(); }, key, modifiers);
        QTRY_VERIFY(!named(window.get(), u"Loading events…"_s));
        QCOMPARE(count(m_server, "GET"), before + 1);
        // And another press is another load.
        QTest::keyClick(window.get(), key, modifiers);
        QTRY_COMPARE(count(m_server, "GET"), before + 2);
        QTRY_VERIFY(named(window.get(), u"fête"_s));
    }

    void aHeldReturnOpensTheEventAndNothingMore_data()
    {
        QTest::addColumn<Qt::Key>("key");
        QTest::newRow("Return") << Qt::Key_Return;
        QTest::newRow("Enter") << Qt::Key_Enter;
        QTest::newRow("Space") << Qt::Key_Space;
    }

    void aHeldReturnOpensTheEventAndNothingMore()
    {
        QFETCH(Qt::Key, key);
        const Desktop desktop;
        const auto window = this->window();
        QVERIFY(window);
        shownList(window.get())->focusRow(u"fête"_s);
        holdOnFocus(key);
        QTRY_VERIFY(sheet(window.get()));
        QVERIFY(sheet(window.get())->findChild<LinkLabel *>());
        QCOMPARE(desktop.opened, 0);
    }

    void aHeldReturnSignsUpOnce()
    {
        // Refused at once: the button can be pressed again while the key is still down.
        m_service.toAccounts = HttpAnswer::whole(400, R"({"msg":"no"})");
        const auto window = this->window();
        QVERIFY(window);
        click(window.get(), u"Ajouter un compte"_s);
        QTRY_VERIFY(field(sheet(window.get()), u"Email"_s)->hasFocus());
        // The form gives it the focus once more, before a person can do anything.
        QCoreApplication::processEvents();
        QTest::keyClicks(field(sheet(window.get()), u"Email"_s), u"a@b.fr"_s);
        QTest::keyClicks(field(sheet(window.get()), u"Mot de passe"_s), u"secret"_s);
        createAccount(sheet(window.get()))->setFocus(Qt::TabFocusReason);
        const int before = count(m_server, "POST", "/auth/");
        QTest::keyPress(QApplication::focusWidget(), Qt::Key_Return);
        for (int i = 0; i < repetitions; ++i) {
            QTRY_VERIFY(createAccount(sheet(window.get()))->isEnabled());
            repeat(QApplication::focusWidget(), Qt::Key_Return, 1);
        }
        QTest::keyRelease(QApplication::focusWidget(), Qt::Key_Return);
        QTRY_VERIFY(createAccount(sheet(window.get()))->isEnabled());
        QCOMPARE(count(m_server, "POST", "/auth/"), before + 1);
        QTRY_COMPARE(QApplication::focusWidget()->accessibleName(), u"Créer un compte"_s);
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Return);
        QTRY_COMPARE(count(m_server, "POST", "/auth/"), before + 2);
        QTRY_VERIFY(createAccount(sheet(window.get()))->isEnabled());
    }

    void aHeldReturnOpensTheAccountMenuAndChoosesNothing()
    {
        const auto window = this->window();
        QVERIFY(window);
        signInAs(u"a@b.fr"_s);
        QTRY_VERIFY(button(window.get(), u"Ajouter un événement"_s));
        button(window.get(), u"Compte"_s)->setFocus(Qt::TabFocusReason);
        holdOnFocus(Qt::Key_Return);
        QVERIFY(accountMenu(window.get()));
        QVERIFY(SupabaseClient::session().accessToken);
    }
};

int main(int argc, char *argv[])
{
    return runWithService<TestWindowHeldKeys>(argc, argv, installSectionListAccessibility);
}

#include "test_window_held_keys.moc"
