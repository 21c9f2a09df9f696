#include "controls/ErrorText.h"
#include "controls/TabStrip.h"
#include "look/KeyboardFocus.h"
#include "sectionlist/SectionList.h"
#include "sectionlist/SectionListAccessible.h"
#include "support/ViewMain.h"
#include "support/WindowTest.h"

#include <QApplication>
#include <QScrollBar>

#include <initializer_list>

using namespace Qt::StringLiterals;

using namespace WindowTest;

/// A window that loads again: what it keeps, and which of several loads it shows.
class TestWindowReloading : public QObject {
    Q_OBJECT

public:
    explicit TestWindowReloading(HttpServer &server)
        : m_server(server)
    {
    }

private Q_SLOTS:
    void init();

    void f5AndCtrlRLoadAgain_data();
    void f5AndCtrlRLoadAgain();
    void aWindowHiddenAndShownAgainLoadsAgain();
    void aWindowComingBackFromTheTaskBarDoesNot();
    void ofOverlappingLoadsTheLaterToFinishIsShown();
    void aReloadKeepsTheChosenTab();
    void aReloadKeepsThePlaceInTheList();
    void aReloadKeepsTheFocusOnItsRow();
    void ofCrossingLoadsNothingOfTheEarlierListStays();
    void aReloadKeepsTheFocusOnTheTabs();
    void aReloadThatLeavesNoEventGoesOnFromTheTabs_data();
    void aReloadThatLeavesNoEventGoesOnFromTheTabs();
    void aReloadFromTheErrorGoesOnFromThere();
    void aReloadDoesNotTakeTheFocusBackFromWhereThePersonWent();

private:
    HttpServer &m_server;
};

void TestWindowReloading::init()
{
    m_server.answer(reply({}));
}

void TestWindowReloading::f5AndCtrlRLoadAgain_data()
{
    QTest::addColumn<Qt::Key>("key");
    QTest::addColumn<Qt::KeyboardModifiers>("modifiers");
    QTest::newRow("F5") << Qt::Key_F5 << Qt::KeyboardModifiers(Qt::NoModifier);
    QTest::newRow("Ctrl+R") << Qt::Key_R << Qt::KeyboardModifiers(Qt::ControlModifier);
}

void TestWindowReloading::f5AndCtrlRLoadAgain()
{
    QFETCH(Qt::Key, key);
    QFETCH(Qt::KeyboardModifiers, modifiers);
    const auto window = shownWindow();
    QTRY_VERIFY(named(window.get(), u"No events found."_s));
    m_server.answer(reply({row(u"new"_s, 1)}));
    QTest::keyClick(window.get(), key, modifiers);
    QTRY_VERIFY(named(window.get(), u"new"_s));
}

void TestWindowReloading::aWindowHiddenAndShownAgainLoadsAgain()
{
    const auto window = shownWindow();
    QTRY_VERIFY(named(window.get(), u"No events found."_s));
    const auto before = m_server.requests().size();
    window->hide();
    window->show();
    QTRY_COMPARE(m_server.requests().size(), before + 1);
}

void TestWindowReloading::aWindowComingBackFromTheTaskBarDoesNot()
{
    const auto window = shownWindow();
    QTRY_VERIFY(named(window.get(), u"No events found."_s));
    const auto before = m_server.requests().size();
    // What the window system tells a window that it minimises and shows again.
    QHideEvent hidden;
    QShowEvent shown;
    for (QEvent *event : std::initializer_list<QEvent *>{&hidden, &shown}) {
        QSpontaneKeyEvent::setSpontaneous(event);
        qApp->notify(window.get(), event);
    }
    // A reload by hand, asked for after it, is the only request.
    QTest::keyClick(window.get(), Qt::Key_F5);
    QTRY_COMPARE(m_server.requests().size(), before + 1);
    QTRY_VERIFY(named(window.get(), u"No events found."_s));
    QCOMPARE(m_server.requests().size(), before + 1);
}

void TestWindowReloading::ofOverlappingLoadsTheLaterToFinishIsShown()
{
    int asked = 0;
    m_server.answerWith([&](const HttpRequest &) {
        return ++asked == 1 ? reply({row(u"slow"_s, 1)}).late(300) : reply({row(u"fast"_s, 1)});
    });
    const auto window = shownWindow();
    QTRY_COMPARE(asked, 1);
    QTest::keyClick(window.get(), Qt::Key_F5);
    QTRY_VERIFY(named(window.get(), u"fast"_s));
    QTRY_VERIFY(named(window.get(), u"slow"_s));
    QVERIFY(!named(window.get(), u"fast"_s));
}

void TestWindowReloading::aReloadKeepsTheChosenTab()
{
    m_server.answer(reply({row(u"gone"_s, -40), row(u"soon"_s, 40)}));
    const auto window = shownWindow();
    QTRY_VERIFY(named(window.get(), u"Passés"_s));
    QTest::mouseClick(named(window.get(), u"Passés"_s), Qt::LeftButton);
    QTest::keyClick(window.get(), Qt::Key_F5);
    QTRY_VERIFY(!named(window.get(), u"gone"_s));
    QTRY_VERIFY(named(window.get(), u"gone"_s));
}

void TestWindowReloading::aReloadKeepsThePlaceInTheList()
{
    QJsonArray rows;
    for (int i = 0; i < 100; ++i)
        rows.append(row(u"event %1"_s.arg(i), 1 + i));
    m_server.answer(reply(rows));
    const auto window = shownWindow();
    QTRY_VERIFY(named(window.get(), u"event 0"_s));
    auto *list = shownList(window.get());
    list->showRow(60);
    QWidget *seen = nullptr;
    QTRY_VERIFY((seen = named(window.get(), u"event 60"_s)));
    const int y = seen->mapTo(window.get(), QPoint()).y();

    // Two more events come before it.
    rows.prepend(row(u"earlier"_s, 0));
    rows.prepend(row(u"first"_s, 0));
    m_server.answer(reply(rows));
    QTest::keyClick(window.get(), Qt::Key_F5);
    QTRY_VERIFY(!named(window.get(), u"event 60"_s));
    QTRY_VERIFY((seen = named(window.get(), u"event 60"_s)));
    QCOMPARE(seen->mapTo(window.get(), QPoint()).y(), y);
}

void TestWindowReloading::aReloadKeepsTheFocusOnItsRow()
{
    m_server.answer(reply({row(u"a"_s, 1), row(u"b"_s, 2), row(u"c"_s, 3)}));
    const auto window = shownWindow();
    QTRY_VERIFY(named(window.get(), u"b"_s));
    shownList(window.get())->focusRow(u"b"_s);
    QTRY_COMPARE(window->focusWidget()->accessibleName(), u"b"_s);
    QTest::keyClick(window.get(), Qt::Key_F5);
    QTRY_VERIFY(!named(window.get(), u"b"_s));
    QTRY_VERIFY(named(window.get(), u"b"_s));
    QCOMPARE(window->focusWidget()->accessibleName(), u"b"_s);
}

void TestWindowReloading::ofCrossingLoadsNothingOfTheEarlierListStays()
{
    m_server.answer(reply({row(u"a"_s, 1), row(u"b"_s, 2)}));
    const auto window = shownWindow();
    QTRY_VERIFY(named(window.get(), u"b"_s));
    int asked = 0;
    m_server.answerWith([&](const HttpRequest &) {
        return ++asked == 1 ? reply({row(u"c"_s, 1), row(u"d"_s, 2)}).whenReleased()
                            : reply({row(u"a"_s, 1), row(u"b"_s, 2)});
    });
    QTest::keyClick(window.get(), Qt::Key_F5);
    QTRY_COMPARE(asked, 1);
    QTest::keyClick(window.get(), Qt::Key_F5);
    QTRY_VERIFY(named(window.get(), u"b"_s));
    shownList(window.get())->focusRow(u"b"_s);
    m_server.release();
    QTRY_VERIFY(named(window.get(), u"d"_s));
    QVERIFY(!named(window.get(), u"a"_s));
    QVERIFY(!named(window.get(), u"b"_s));
    QCOMPARE(window->focusWidget()->accessibleName(), u"d"_s);
}

void TestWindowReloading::aReloadKeepsTheFocusOnTheTabs()
{
    const auto window = shownWindow();
    QTRY_VERIFY(named(window.get(), u"No events found."_s));
    QTest::mouseClick(named(window.get(), u"Passés"_s), Qt::LeftButton);
    window->findChild<TabStrip *>()->setFocus(Qt::TabFocusReason);
    const QPointer<QWidget> focus = window->focusWidget();
    QVERIFY(focus && window->findChild<TabStrip *>()->isAncestorOf(focus));
    QTest::keyClick(window.get(), Qt::Key_F5);
    QTRY_VERIFY(!named(window.get(), u"No events found."_s));
    QTRY_VERIFY(named(window.get(), u"No events found."_s));
    QCOMPARE(window->focusWidget(), focus.data());
}

void TestWindowReloading::aReloadThatLeavesNoEventGoesOnFromTheTabs_data()
{
    QTest::addColumn<bool>("isByKeyboard");
    QTest::newRow("by keyboard") << true;
    QTest::newRow("by mouse") << false;
}

void TestWindowReloading::aReloadThatLeavesNoEventGoesOnFromTheTabs()
{
    QFETCH(bool, isByKeyboard);
    m_server.answer(reply({row(u"a"_s, 1)}));
    const auto window = shownWindow();
    QTRY_VERIFY(named(window.get(), u"a"_s));
    named(window.get(), u"a"_s)->setFocus(isByKeyboard ? Qt::TabFocusReason : Qt::MouseFocusReason);
    m_server.answer(reply({}));
    QTest::keyClick(window.get(), Qt::Key_F5);
    QTRY_VERIFY(named(window.get(), u"No events found."_s));
    QCOMPARE(window->focusWidget(), button(window.get(), u"À venir"_s));
    QCOMPARE(KeyboardFocus::isVisibleOn(window->focusWidget()), isByKeyboard);
}

void TestWindowReloading::aReloadFromTheErrorGoesOnFromThere()
{
    m_server.answer(HttpAnswer::whole(404, ""));
    const auto window = shownWindow();
    QTRY_VERIFY(named(window.get(), u"Failed to load events: HTTP 404"_s));
    window->findChild<ErrorText *>()->setFocus(Qt::TabFocusReason);
    m_server.answer(reply({row(u"new"_s, 1)}));
    QTest::keyClick(window.get(), Qt::Key_F5);
    QTRY_VERIFY(named(window.get(), u"new"_s));
    QVERIFY(window->focusWidget() && window->focusWidget()->isVisible());
    QTest::keyClick(window.get(), Qt::Key_Tab);
    QCOMPARE(QApplication::focusWidget(), button(window.get(), u"À venir"_s));
}

void TestWindowReloading::aReloadDoesNotTakeTheFocusBackFromWhereThePersonWent()
{
    m_server.answer(reply({row(u"a"_s, 1)}));
    const auto window = shownWindow();
    QTRY_VERIFY(named(window.get(), u"a"_s));
    shownList(window.get())->focusRow(u"a"_s);

    m_server.answer(reply({row(u"a"_s, 1)}).late(50));
    QTest::keyClick(window.get(), Qt::Key_F5);
    QAbstractButton *account = button(window.get(), u"Compte"_s);
    account->setFocus(Qt::TabFocusReason);
    QTRY_VERIFY(named(window.get(), u"a"_s));
    QCOMPARE(window->focusWidget(), account);
}

int main(int argc, char *argv[])
{
    return runWithService<TestWindowReloading>(argc, argv, installSectionListAccessibility);
}
#include "test_window_reloading.moc"
