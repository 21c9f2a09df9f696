#include "browse/EventRow.h"
#include "controls/Accessibility.h"
#include "controls/SectionList.h"
#include "controls/TabStrip.h"
#include "support/OwnHome.h"
#include "support/WindowTest.h"

#include <QApplication>
#include <QScrollBar>

#include <algorithm>

using namespace WindowTest;

/// The main window against a loopback service.
class TestWindow : public QObject {
    Q_OBJECT
public:
    explicit TestWindow(HttpServer &server)
        : m_server(server)
    {
    }

private Q_SLOTS:
    void init();

    void theFirstFrameSaysThatEventsAreLoading();
    void eventsShowInTheTabTheyBelongTo();
    void anEventOfTodayIsComing();
    void monthsHeadTheirEvents();
    void aTabWithoutEventsSaysSo();
    void eventsWithoutADateAreNotShown();
    void aFailedLoadShowsTheReasonInPlaceOfTheList();
    void aFailureAfterASuccessHidesTheListUntilTheNextSuccess();
    void anUndecodableReplyIsToldWhole();
    void f5AndCtrlRLoadAgain_data();
    void f5AndCtrlRLoadAgain();
    void aWindowHiddenAndShownAgainLoadsAgain();
    void aWindowComingBackFromTheTaskBarDoesNot();
    void ofOverlappingLoadsTheLaterToFinishIsShown();
    void aReloadKeepsTheChosenTab();
    void aReloadKeepsThePlaceInTheList();
    void aReloadKeepsTheFocusOnItsRow();
    void aReloadKeepsTheFocusOnTheTabs();
    void aReloadDoesNotTakeTheFocusBackFromWhereThePersonWent();
    void aWindowClosedWhileLoadingIsJustGone();
    void twoWindowsKeepTheirOwnTabs();
    void signedOutTheHeaderOffersAnAccountAndNoNewEvent();
    void anEventWithoutOwnerShowsItsButtonsWhenSignedOut();
    void clickingARowChoosesIt();
    void theWindowNeverGetsSmallerThanItsContentNeeds();

private:
    HttpServer &m_server;
};

void TestWindow::init()
{
    m_server.answer(reply({}));
}

void TestWindow::theFirstFrameSaysThatEventsAreLoading()
{
    m_server.answer(reply({row(QStringLiteral("a"), 1)}).late(50));
    ContentView window;
    window.show();
    // Before the event loop has come round once, so before anything was painted.
    QVERIFY(named(&window, QStringLiteral("Loading events…")));
    QVERIFY(!named(&window, QStringLiteral("No events found.")));
    QTRY_VERIFY(named(&window, QStringLiteral("a")));
    QVERIFY(!named(&window, QStringLiteral("Loading events…")));
}

void TestWindow::eventsShowInTheTabTheyBelongTo()
{
    m_server.answer(reply({row(QStringLiteral("gone"), -40), row(QStringLiteral("soon"), 40)}));
    const auto window = shownWindow();
    QTRY_VERIFY(named(window.get(), QStringLiteral("soon")));
    QVERIFY(!named(window.get(), QStringLiteral("gone")));
    QTest::mouseClick(named(window.get(), QStringLiteral("Passés")), Qt::LeftButton);
    QTRY_VERIFY(named(window.get(), QStringLiteral("gone")));
    QVERIFY(!named(window.get(), QStringLiteral("soon")));
}

void TestWindow::anEventOfTodayIsComing()
{
    const QString today = QDate::currentDate().startOfDay().toUTC().toString(Qt::ISODate);
    const QString yesterday =
        QDate::currentDate().startOfDay().addMSecs(-1000).toUTC().toString(Qt::ISODate);
    m_server.answer(
        reply({row(QStringLiteral("yesterday"), 0, {{QStringLiteral("starts_at"), yesterday}}),
               row(QStringLiteral("today"), 0, {{QStringLiteral("starts_at"), today}})}));
    const auto window = shownWindow();
    QTRY_VERIFY(named(window.get(), QStringLiteral("today")));
    QVERIFY(!named(window.get(), QStringLiteral("yesterday")));
}

void TestWindow::monthsHeadTheirEvents()
{
    m_server.answer(reply({
        row(QStringLiteral("a"), 0,
            {{QStringLiteral("starts_at"), QStringLiteral("2190-01-15T10:00:00+00:00")}}),
        row(QStringLiteral("b"), 0,
            {{QStringLiteral("starts_at"), QStringLiteral("2190-02-15T10:00:00+00:00")}}),
    }));
    const auto window = shownWindow();
    QTRY_VERIFY(named(window.get(), QStringLiteral("b")));
    QCOMPARE(headings(shownList(window.get())),
             QStringList({QStringLiteral("Janvier 2190"), QStringLiteral("Février 2190")}));
}

void TestWindow::aTabWithoutEventsSaysSo()
{
    const auto window = shownWindow();
    QTRY_VERIFY(named(window.get(), QStringLiteral("No events found.")));
    QTest::mouseClick(named(window.get(), QStringLiteral("Passés")), Qt::LeftButton);
    QVERIFY(named(window.get(), QStringLiteral("No events found.")));
}

void TestWindow::eventsWithoutADateAreNotShown()
{
    const QJsonObject undated{{QStringLiteral("id"), QStringLiteral("x")},
                              {QStringLiteral("titre"), QStringLiteral("x")},
                              {QStringLiteral("date_texte"), QStringLiteral("samedi")}};
    m_server.answer(reply({undated}));
    const auto window = shownWindow();
    QTRY_VERIFY(named(window.get(), QStringLiteral("No events found.")));
}

void TestWindow::aFailedLoadShowsTheReasonInPlaceOfTheList()
{
    m_server.answer(HttpAnswer::whole(503, R"({"message":"Service temporarily unavailable"})"));
    const auto window = shownWindow();
    QTRY_VERIFY(named(window.get(),
                      QStringLiteral("Failed to load events: HTTP 503: "
                                     "{\"message\":\"Service temporarily unavailable\"}")));
    QVERIFY(!named(window.get(), QStringLiteral("À venir")));
}

void TestWindow::aFailureAfterASuccessHidesTheListUntilTheNextSuccess()
{
    m_server.answer(reply({row(QStringLiteral("a"), 1)}));
    const auto window = shownWindow();
    QTRY_VERIFY(named(window.get(), QStringLiteral("a")));

    m_server.answer(HttpAnswer::whole(404, {}));
    QTest::keyClick(window.get(), Qt::Key_F5);
    QTRY_VERIFY(named(window.get(), QStringLiteral("Failed to load events: HTTP 404")));
    QVERIFY(!named(window.get(), QStringLiteral("a")));

    m_server.answer(reply({row(QStringLiteral("b"), 1)}));
    QTest::keyClick(window.get(), Qt::Key_F5);
    QTRY_VERIFY(named(window.get(), QStringLiteral("b")));
    QVERIFY(!named(window.get(), QStringLiteral("Failed to load events: HTTP 404")));
}

void TestWindow::anUndecodableReplyIsToldWhole()
{
    m_server.answer(HttpAnswer::whole(200, R"([{"id":"1","titre":"x","starts_at":"14/06/2025"}])"));
    const auto window = shownWindow();
    const auto told = [&](const QString &part) {
        const auto widgets = window->findChildren<QWidget *>();
        return std::any_of(widgets.begin(), widgets.end(), [&](const QWidget *widget) {
            return widget->isVisible() && widget->accessibleName().contains(part);
        });
    };
    QTRY_VERIFY(told(QStringLiteral("Failed to load events: Decode error: ")));
    QVERIFY(told(QStringLiteral("events[0].starts_at: Invalid date: 14/06/2025")));
    QVERIFY(told(QStringLiteral(". Saved response to /tmp/events-response.json")));
}

void TestWindow::f5AndCtrlRLoadAgain_data()
{
    QTest::addColumn<Qt::Key>("key");
    QTest::addColumn<Qt::KeyboardModifiers>("modifiers");
    QTest::newRow("F5") << Qt::Key_F5 << Qt::KeyboardModifiers(Qt::NoModifier);
    QTest::newRow("Ctrl+R") << Qt::Key_R << Qt::KeyboardModifiers(Qt::ControlModifier);
}

void TestWindow::f5AndCtrlRLoadAgain()
{
    QFETCH(Qt::Key, key);
    QFETCH(Qt::KeyboardModifiers, modifiers);
    const auto window = shownWindow();
    QTRY_VERIFY(named(window.get(), QStringLiteral("No events found.")));
    m_server.answer(reply({row(QStringLiteral("new"), 1)}));
    QTest::keyClick(window.get(), key, modifiers);
    QTRY_VERIFY(named(window.get(), QStringLiteral("new")));
}

void TestWindow::aWindowHiddenAndShownAgainLoadsAgain()
{
    const auto window = shownWindow();
    QTRY_VERIFY(named(window.get(), QStringLiteral("No events found.")));
    const auto before = m_server.requests().size();
    window->hide();
    window->show();
    QTRY_COMPARE(m_server.requests().size(), before + 1);
}

void TestWindow::aWindowComingBackFromTheTaskBarDoesNot()
{
    const auto window = shownWindow();
    QTRY_VERIFY(named(window.get(), QStringLiteral("No events found.")));
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
    QTRY_VERIFY(named(window.get(), QStringLiteral("No events found.")));
    QCOMPARE(m_server.requests().size(), before + 1);
}

void TestWindow::ofOverlappingLoadsTheLaterToFinishIsShown()
{
    int asked = 0;
    m_server.answerWith([&](const HttpRequest &) {
        return ++asked == 1 ? reply({row(QStringLiteral("slow"), 1)}).late(300)
                            : reply({row(QStringLiteral("fast"), 1)});
    });
    const auto window = shownWindow();
    QTRY_COMPARE(asked, 1);
    QTest::keyClick(window.get(), Qt::Key_F5);
    QTRY_VERIFY(named(window.get(), QStringLiteral("fast")));
    QTRY_VERIFY(named(window.get(), QStringLiteral("slow")));
    QVERIFY(!named(window.get(), QStringLiteral("fast")));
}

void TestWindow::aReloadKeepsTheChosenTab()
{
    m_server.answer(reply({row(QStringLiteral("gone"), -40), row(QStringLiteral("soon"), 40)}));
    const auto window = shownWindow();
    QTRY_VERIFY(named(window.get(), QStringLiteral("Passés")));
    QTest::mouseClick(named(window.get(), QStringLiteral("Passés")), Qt::LeftButton);
    QTest::keyClick(window.get(), Qt::Key_F5);
    QTRY_VERIFY(!named(window.get(), QStringLiteral("gone")));
    QTRY_VERIFY(named(window.get(), QStringLiteral("gone")));
}

void TestWindow::aReloadKeepsThePlaceInTheList()
{
    QJsonArray rows;
    for (int i = 0; i < 100; ++i)
        rows.append(row(QStringLiteral("event %1").arg(i), 1 + i));
    m_server.answer(reply(rows));
    const auto window = shownWindow();
    QTRY_VERIFY(named(window.get(), QStringLiteral("event 0")));
    auto *list = shownList(window.get());
    list->showRow(60);
    QWidget *seen = nullptr;
    QTRY_VERIFY((seen = named(window.get(), QStringLiteral("event 60"))));
    const int y = seen->mapTo(window.get(), QPoint()).y();

    // Two more events come before it.
    rows.prepend(row(QStringLiteral("earlier"), 0));
    rows.prepend(row(QStringLiteral("first"), 0));
    m_server.answer(reply(rows));
    QTest::keyClick(window.get(), Qt::Key_F5);
    QTRY_VERIFY(!named(window.get(), QStringLiteral("event 60")));
    QTRY_VERIFY((seen = named(window.get(), QStringLiteral("event 60"))));
    QCOMPARE(seen->mapTo(window.get(), QPoint()).y(), y);
}

void TestWindow::aReloadKeepsTheFocusOnItsRow()
{
    m_server.answer(reply(
        {row(QStringLiteral("a"), 1), row(QStringLiteral("b"), 2), row(QStringLiteral("c"), 3)}));
    const auto window = shownWindow();
    QTRY_VERIFY(named(window.get(), QStringLiteral("b")));
    shownList(window.get())->focusRow(QStringLiteral("b"));
    QTRY_COMPARE(window->focusWidget()->accessibleName(), QStringLiteral("b"));
    QTest::keyClick(window.get(), Qt::Key_F5);
    QTRY_VERIFY(!named(window.get(), QStringLiteral("b")));
    QTRY_VERIFY(named(window.get(), QStringLiteral("b")));
    QCOMPARE(window->focusWidget()->accessibleName(), QStringLiteral("b"));
}

void TestWindow::aReloadKeepsTheFocusOnTheTabs()
{
    const auto window = shownWindow();
    QTRY_VERIFY(named(window.get(), QStringLiteral("No events found.")));
    QTest::mouseClick(named(window.get(), QStringLiteral("Passés")), Qt::LeftButton);
    window->findChild<TabStrip *>()->setFocus(Qt::TabFocusReason);
    const QPointer<QWidget> focus = window->focusWidget();
    QVERIFY(focus && window->findChild<TabStrip *>()->isAncestorOf(focus));
    QTest::keyClick(window.get(), Qt::Key_F5);
    QTRY_VERIFY(!named(window.get(), QStringLiteral("No events found.")));
    QTRY_VERIFY(named(window.get(), QStringLiteral("No events found.")));
    QCOMPARE(window->focusWidget(), focus.data());
}

void TestWindow::aReloadDoesNotTakeTheFocusBackFromWhereThePersonWent()
{
    m_server.answer(reply({row(QStringLiteral("a"), 1)}));
    const auto window = shownWindow();
    QTRY_VERIFY(named(window.get(), QStringLiteral("a")));
    shownList(window.get())->focusRow(QStringLiteral("a"));

    m_server.answer(reply({row(QStringLiteral("a"), 1)}).late(50));
    QTest::keyClick(window.get(), Qt::Key_F5);
    QAbstractButton *account = button(window.get(), QStringLiteral("Compte"));
    account->setFocus(Qt::TabFocusReason);
    QTRY_VERIFY(named(window.get(), QStringLiteral("a")));
    QCOMPARE(window->focusWidget(), account);
}

void TestWindow::aWindowClosedWhileLoadingIsJustGone()
{
    bool answered = false;
    const QObject whileHere;
    connect(&m_server, &HttpServer::answered, &whileHere, [&] { answered = true; });
    m_server.answer(reply({row(QStringLiteral("a"), 1)}).late(50));
    const auto before = m_server.requests().size();
    auto window = shownWindow();
    QTRY_COMPARE(m_server.requests().size(), before + 1);
    window.reset();
    // The reply finds nobody; a memory checker would speak up here.
    QTRY_VERIFY(answered);
    QTest::qWait(20);
}

void TestWindow::twoWindowsKeepTheirOwnTabs()
{
    m_server.answer(reply({row(QStringLiteral("gone"), -40), row(QStringLiteral("soon"), 40)}));
    const auto first = shownWindow();
    const auto second = shownWindow();
    QTRY_VERIFY(named(first.get(), QStringLiteral("soon")));
    QTRY_VERIFY(named(second.get(), QStringLiteral("soon")));
    QTest::mouseClick(named(second.get(), QStringLiteral("Passés")), Qt::LeftButton);
    QTRY_VERIFY(named(second.get(), QStringLiteral("gone")));
    QVERIFY(named(first.get(), QStringLiteral("soon")));
}

void TestWindow::signedOutTheHeaderOffersAnAccountAndNoNewEvent()
{
    const auto window = shownWindow();
    QVERIFY(button(window.get(), QStringLiteral("Ajouter un compte")));
    QVERIFY(button(window.get(), QStringLiteral("Compte")));
    QVERIFY(!button(window.get(), QStringLiteral("Ajouter un événement")));
    QVERIFY(named(window.get(), QStringLiteral("amorvelle.fr")));
    QVERIFY(named(window.get(), QStringLiteral("Les événements à Morvelle et ses environs")));
}

void TestWindow::anEventWithoutOwnerShowsItsButtonsWhenSignedOut()
{
    m_server.answer(reply({
        row(QStringLiteral("free"), 1),
        row(QStringLiteral("owned"), 2, {{QStringLiteral("user_id"), QStringLiteral("somebody")}}),
    }));
    const auto window = shownWindow();
    QTRY_VERIFY(named(window.get(), QStringLiteral("free")));
    QVERIFY(button(named(window.get(), QStringLiteral("free")), QStringLiteral("Modifier")));
    QVERIFY(button(named(window.get(), QStringLiteral("free")), QStringLiteral("Supprimer")));
    QVERIFY(!button(named(window.get(), QStringLiteral("owned")), QStringLiteral("Modifier")));
    QVERIFY(!button(named(window.get(), QStringLiteral("owned")), QStringLiteral("Supprimer")));
}

void TestWindow::clickingARowChoosesIt()
{
    m_server.answer(reply({row(QStringLiteral("a"), 1), row(QStringLiteral("b"), 2)}));
    const auto window = shownWindow();
    QTRY_VERIFY(named(window.get(), QStringLiteral("b")));
    auto *b = qobject_cast<EventRow *>(named(window.get(), QStringLiteral("b")));
    QVERIFY(b && !b->isSelected());
    QTest::mouseClick(b, Qt::LeftButton);
    QVERIFY(b->isSelected());
}

void TestWindow::theWindowNeverGetsSmallerThanItsContentNeeds()
{
    ContentView window;
    QCOMPARE(window.minimumSize(), QSize(520, 360));
    window.resize(100, 100);
    QCOMPARE(window.size(), QSize(520, 360));
    QCOMPARE(window.sizeHint(), QSize(760, 620));
}

int main(int argc, char *argv[])
{
    const OwnHome home;
    const QApplication application(argc, argv);
    installAccessibility();
    HttpServer server;
    // The configuration is read once, at the first use of the service.
    qputenv("SUPABASE_URL", server.base().toLatin1());
    qputenv("SUPABASE_KEY", "public-key");
    TestWindow test(server);
    const int result = QTest::qExec(&test, argc, argv);
    server.hangUp();
    return result;
}
#include "test_window.moc"
