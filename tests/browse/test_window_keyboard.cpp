#include "look/KeyboardFocus.h"
#include "support/MembersWindow.h"
#include "support/ViewMain.h"

#include <QWindow>

#include <algorithm>
#include <memory>
#include <utility>

using namespace MembersWindow;
using namespace WindowTest;

namespace {

/// Whether the widget with the focus shows so.
bool showsRing(const QWidget *widget)
{
    if (const auto *row = qobject_cast<const SectionListRow *>(widget))
        return row->showsFocus();
    const auto rings = widget->findChildren<KeyboardFocus *>(Qt::FindDirectChildrenOnly);
    return std::any_of(rings.begin(), rings.end(),
                       [](const KeyboardFocus *ring) { return ring->isVisible(); });
}

} // namespace

/// The window for somebody without a mouse.
class TestWindowKeyboard : public QObject {
    Q_OBJECT

public:
    explicit TestWindowKeyboard(HttpServer &server)
        : m_server(server)
    {
        m_server.answerWith([this](const HttpRequest &request) { return service.answer(request); });
    }

private Q_SLOTS:
    void init();

    void atStartNothingHasAnUnseenFocus();
    void tabGoesThroughHeaderTabsAndList();
    void aReloadKeepsTheRingThatWasShown_data();
    void aReloadKeepsTheRingThatWasShown();
    void aReloadShowsNoRingAfterTheMouse();
    void aReloadWithoutTheRowLeavesItsButtonAlone();
    void theRingGoesWithTheFocusWhenTheAccountMenuCloses();

private:
    std::unique_ptr<ContentView> loadedWindow() const;
    void reload(ContentView *window) const;
    QStringList stopsFrom(ContentView *window, Qt::Key key) const;

    HttpServer &m_server;
    Service service;
};

void TestWindowKeyboard::init()
{
    service = {};
    service.rows = {row(u"a"_s, 1, {{u"user_id"_s, u"moi"_s}}),
                    row(u"b"_s, 2, {{u"user_id"_s, u"moi"_s}}),
                    row(u"old"_s, -40, {{u"user_id"_s, u"moi"_s}})};
    SupabaseClient::signOut();
}

std::unique_ptr<ContentView> TestWindowKeyboard::loadedWindow() const
{
    auto window = shownWindow();
    const bool isLoaded = QTest::qWaitFor([&] { return named(window.get(), u"a"_s) != nullptr; });
    return isLoaded ? std::move(window) : nullptr;
}

void TestWindowKeyboard::reload(ContentView *window) const
{
    const auto before = count(m_server, "GET");
    QTest::keyClick(window->windowHandle(), Qt::Key_F5);
    QVERIFY(named(window, u"Loading events…"_s));
    QTRY_COMPARE(count(m_server, "GET"), before + 1);
    QTRY_VERIFY(!named(window, u"Loading events…"_s));
}

/// What a key stops at, until it has come round.
QStringList TestWindowKeyboard::stopsFrom(ContentView *window, Qt::Key key) const
{
    QStringList stops;
    constexpr int most = 20;
    for (int i = 0; i < most; ++i) {
        QTest::keyClick(window->windowHandle(), key);
        const QWidget *focus = window->focusWidget();
        if (!focus || !showsRing(focus))
            return stops << u"(unseen)"_s;
        if (!stops.isEmpty() && focus->accessibleName() == stops.first())
            return stops;
        stops.append(focus->accessibleName());
    }
    return stops;
}

void TestWindowKeyboard::atStartNothingHasAnUnseenFocus()
{
    const auto window = loadedWindow();
    QVERIFY(window);
    QCOMPARE(window->focusWidget(), window.get());
    const auto requests = m_server.requests().size();
    for (const Qt::Key key : {Qt::Key_Space, Qt::Key_Return, Qt::Key_Enter})
        QTest::keyClick(window->windowHandle(), key);
    QVERIFY(!sheet(window.get()));
    QVERIFY(!accountMenu(window.get()));
    QCOMPARE(m_server.requests().size(), requests);
    QTest::keyClick(window->windowHandle(), Qt::Key_Tab);
    QCOMPARE(window->focusWidget()->accessibleName(), u"Ajouter un compte"_s);
    QVERIFY(showsRing(window->focusWidget()));
}

void TestWindowKeyboard::tabGoesThroughHeaderTabsAndList()
{
    const auto window = loadedWindow();
    QVERIFY(window);
    QCOMPARE(stopsFrom(window.get(), Qt::Key_Tab),
             QStringList({u"Ajouter un compte"_s, u"Compte"_s, u"À venir"_s, u"a"_s}));
    QTest::keyClick(window->windowHandle(), Qt::Key_Tab); // to "Compte"
    QTest::keyClick(window->windowHandle(), Qt::Key_Tab);
    QTest::keyClick(window->windowHandle(), Qt::Key_Right);
    QTRY_VERIFY(named(window.get(), u"old"_s));
    QCOMPARE(stopsFrom(window.get(), Qt::Key_Tab),
             QStringList({u"old"_s, u"Ajouter un compte"_s, u"Compte"_s, u"Passés"_s}));

    signInAs(u"m@exemple.fr"_s);
    QTRY_VERIFY(named(window.get(), u"Ajouter un événement"_s));
    QTest::keyClick(window->windowHandle(), Qt::Key_Left);
    QTRY_VERIFY(named(window.get(), u"Passés"_s));
    window->setFocus();
    QTest::mouseClick(named(window.get(), u"À venir"_s), Qt::LeftButton);
    window->setFocus();
    QCOMPARE(stopsFrom(window.get(), Qt::Key_Tab),
             QStringList({u"Ajouter un événement"_s, u"Compte"_s, u"À venir"_s, u"a"_s,
                          u"Modifier"_s, u"Supprimer"_s}));
    window->setFocus();
    QCOMPARE(stopsFrom(window.get(), Qt::Key_Backtab),
             QStringList({u"Supprimer"_s, u"Modifier"_s, u"a"_s, u"À venir"_s, u"Compte"_s,
                          u"Ajouter un événement"_s}));
}

void TestWindowKeyboard::aReloadKeepsTheRingThatWasShown_data()
{
    QTest::addColumn<int>("tabs");
    QTest::addColumn<QString>("name");
    QTest::newRow("header") << 2 << u"Compte"_s;
    QTest::newRow("tab") << 3 << u"À venir"_s;
    QTest::newRow("row") << 4 << u"a"_s;
    QTest::newRow("button of a row") << 5 << u"Modifier"_s;
}

void TestWindowKeyboard::aReloadKeepsTheRingThatWasShown()
{
    QFETCH(int, tabs);
    QFETCH(QString, name);
    const auto window = loadedWindow();
    QVERIFY(window);
    signInAs(u"m@exemple.fr"_s);
    QTRY_VERIFY(named(window.get(), u"Ajouter un événement"_s));
    for (int i = 0; i < tabs; ++i)
        QTest::keyClick(window->windowHandle(), Qt::Key_Tab);
    QCOMPARE(window->focusWidget()->accessibleName(), name);
    reload(window.get());
    QCOMPARE(window->focusWidget()->accessibleName(), name);
    QVERIFY(showsRing(window->focusWidget()));
}

void TestWindowKeyboard::aReloadShowsNoRingAfterTheMouse()
{
    const auto window = loadedWindow();
    QVERIFY(window);
    QTest::mouseClick(named(window.get(), u"À venir"_s), Qt::LeftButton);
    QCOMPARE(window->focusWidget()->accessibleName(), u"À venir"_s);
    reload(window.get());
    QCOMPARE(window->focusWidget()->accessibleName(), u"À venir"_s);
    QVERIFY(!showsRing(window->focusWidget()));
}

void TestWindowKeyboard::aReloadWithoutTheRowLeavesItsButtonAlone()
{
    const auto window = loadedWindow();
    QVERIFY(window);
    signInAs(u"m@exemple.fr"_s);
    QTRY_VERIFY(named(window.get(), u"Ajouter un événement"_s));
    for (int i = 0; i < 6; ++i)
        QTest::keyClick(window->windowHandle(), Qt::Key_Tab);
    QCOMPARE(window->focusWidget()->accessibleName(), u"Supprimer"_s);
    service.rows.removeFirst();
    reload(window.get());
    QCOMPARE(window->focusWidget()->accessibleName(), u"b"_s);
    QVERIFY(showsRing(window->focusWidget()));
}

void TestWindowKeyboard::theRingGoesWithTheFocusWhenTheAccountMenuCloses()
{
    const auto window = loadedWindow();
    QTest::keyClick(window.get(), Qt::Key_Tab);
    const QWidget *before = window->focusWidget();
    QVERIFY(showsRing(before));
    QWidget *account = named(window.get(), u"Compte"_s);
    QVERIFY(account && account != before);
    QTest::mouseClick(account, Qt::LeftButton);
    QVERIFY(accountMenu(window.get()));
    QVERIFY(showsRing(before));
    QTest::keyClick(accountMenu(window.get()), Qt::Key_Escape);
    QTRY_COMPARE(window->focusWidget(), account);
    QVERIFY(!showsRing(before));
}

int main(int argc, char *argv[])
{
    return runWithService<TestWindowKeyboard>(argc, argv, installSectionListAccessibility);
}

#include "test_window_keyboard.moc"
