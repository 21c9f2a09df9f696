#include "browse/EventRow.h"
#include "controls/TabStrip.h"
#include "sectionlist/SectionList.h"
#include "sectionlist/SectionListAccessible.h"
#include "support/ViewMain.h"
#include "support/WindowTest.h"

#include <QApplication>

#include <algorithm>
#include <initializer_list>

using namespace Qt::StringLiterals;

using namespace WindowTest;

/// The main window against a loopback service. What loading again does is in
/// test_window_reloading.cpp.
class TestWindow : public QObject {
    Q_OBJECT

public:
    explicit TestWindow(HttpServer &server)
        : m_server(server)
    {
    }

private Q_SLOTS:
    void initTestCase();
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
    void aWindowClosedWhileLoadingIsJustGone();
    void twoWindowsKeepTheirOwnTabs();
    void signedOutTheHeaderOffersAnAccountAndNoNewEvent();
    void theBrandIsTheHeadingOfTheWindow();
    void anEventWithoutOwnerShowsItsButtonsWhenSignedOut();
    void clickingARowChoosesIt();
    void theWindowNeverGetsSmallerThanItsContentNeeds();

private:
    HttpServer &m_server;
};

void TestWindow::initTestCase()
{
    // Nearly all that follows looks for what is coming. Where the window does not open on that, one
    // failure says so, rather than each of them after all its patience.
    m_server.answer(reply({row(u"gone"_s, -40), row(u"soon"_s, 40)}));
    const auto window = shownWindow();
    QTRY_VERIFY(named(window.get(), u"soon"_s) || named(window.get(), u"gone"_s));
    QVERIFY(named(window.get(), u"soon"_s));
    QVERIFY(named(window.get(), u"À venir"_s)->x() < named(window.get(), u"Passés"_s)->x());
}

void TestWindow::init()
{
    m_server.answer(reply({}));
}

void TestWindow::theFirstFrameSaysThatEventsAreLoading()
{
    m_server.answer(reply({row(u"a"_s, 1)}).late(50));
    ContentView window;
    window.show();
    // Before the event loop has come round once, so before anything was painted.
    QVERIFY(named(&window, u"Loading events…"_s));
    QVERIFY(!named(&window, u"No events found."_s));
    QTRY_VERIFY(named(&window, u"a"_s));
    QVERIFY(!named(&window, u"Loading events…"_s));
}

void TestWindow::eventsShowInTheTabTheyBelongTo()
{
    m_server.answer(reply({row(u"gone"_s, -40), row(u"soon"_s, 40)}));
    const auto window = shownWindow();
    QTRY_VERIFY(named(window.get(), u"soon"_s));
    QVERIFY(!named(window.get(), u"gone"_s));
    QTest::mouseClick(named(window.get(), u"Passés"_s), Qt::LeftButton);
    QTRY_VERIFY(named(window.get(), u"gone"_s));
    QVERIFY(!named(window.get(), u"soon"_s));
}

void TestWindow::anEventOfTodayIsComing()
{
    const QString today = QDate::currentDate().startOfDay().toUTC().toString(Qt::ISODate);
    const QString yesterday =
        QDate::currentDate().startOfDay().addMSecs(-1000).toUTC().toString(Qt::ISODate);
    m_server.answer(reply({row(u"yesterday"_s, 0, {{u"starts_at"_s, yesterday}}),
                           row(u"today"_s, 0, {{u"starts_at"_s, today}})}));
    const auto window = shownWindow();
    QTRY_VERIFY(named(window.get(), u"today"_s));
    QVERIFY(!named(window.get(), u"yesterday"_s));
}

void TestWindow::monthsHeadTheirEvents()
{
    m_server.answer(reply({
        row(u"a"_s, 0, {{u"starts_at"_s, u"2190-01-15T10:00:00+00:00"_s}}),
        row(u"b"_s, 0, {{u"starts_at"_s, u"2190-02-15T10:00:00+00:00"_s}}),
    }));
    const auto window = shownWindow();
    QTRY_VERIFY(named(window.get(), u"b"_s));
    QCOMPARE(headings(shownList(window.get())),
             QStringList({u"Janvier 2190"_s, u"Février 2190"_s}));
}

void TestWindow::aTabWithoutEventsSaysSo()
{
    const auto window = shownWindow();
    QTRY_VERIFY(named(window.get(), u"No events found."_s));
    QTest::mouseClick(named(window.get(), u"Passés"_s), Qt::LeftButton);
    QVERIFY(named(window.get(), u"No events found."_s));
}

void TestWindow::eventsWithoutADateAreNotShown()
{
    const QJsonObject undated{
        {u"id"_s, u"x"_s}, {u"titre"_s, u"x"_s}, {u"date_texte"_s, u"samedi"_s}};
    m_server.answer(reply({undated}));
    const auto window = shownWindow();
    QTRY_VERIFY(named(window.get(), u"No events found."_s));
}

void TestWindow::aFailedLoadShowsTheReasonInPlaceOfTheList()
{
    m_server.answer(HttpAnswer::whole(503, R"({"message":"Service temporarily unavailable"})"));
    const auto window = shownWindow();
    QTRY_VERIFY(named(window.get(),
                      u"Failed to load events: HTTP 503: "
                      "{\"message\":\"Service temporarily unavailable\"}"_s));
    QVERIFY(!named(window.get(), u"À venir"_s));
}

void TestWindow::aFailureAfterASuccessHidesTheListUntilTheNextSuccess()
{
    m_server.answer(reply({row(u"a"_s, 1)}));
    const auto window = shownWindow();
    QTRY_VERIFY(named(window.get(), u"a"_s));

    m_server.answer(HttpAnswer::whole(404, {}));
    QTest::keyClick(window.get(), Qt::Key_F5);
    QTRY_VERIFY(named(window.get(), u"Failed to load events: HTTP 404"_s));
    QVERIFY(!named(window.get(), u"a"_s));

    m_server.answer(reply({row(u"b"_s, 1)}));
    QTest::keyClick(window.get(), Qt::Key_F5);
    QTRY_VERIFY(named(window.get(), u"b"_s));
    QVERIFY(!named(window.get(), u"Failed to load events: HTTP 404"_s));
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
    QTRY_VERIFY(told(u"Failed to load events: Decode error: "_s));
    QVERIFY(told(u"events[0].starts_at: Invalid date: 14/06/2025"_s));
    QVERIFY(told(u". Saved response to /tmp/events-response.json"_s));
}

void TestWindow::aWindowClosedWhileLoadingIsJustGone()
{
    bool answered = false;
    const QObject whileHere;
    connect(&m_server, &HttpServer::answered, &whileHere, [&] { answered = true; });
    m_server.answer(reply({row(u"a"_s, 1)}).late(50));
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
    m_server.answer(reply({row(u"gone"_s, -40), row(u"soon"_s, 40)}));
    const auto first = shownWindow();
    const auto second = shownWindow();
    QTRY_VERIFY(named(first.get(), u"soon"_s));
    QTRY_VERIFY(named(second.get(), u"soon"_s));
    QTest::mouseClick(named(second.get(), u"Passés"_s), Qt::LeftButton);
    QTRY_VERIFY(named(second.get(), u"gone"_s));
    QVERIFY(named(first.get(), u"soon"_s));
}

void TestWindow::signedOutTheHeaderOffersAnAccountAndNoNewEvent()
{
    const auto window = shownWindow();
    QVERIFY(button(window.get(), u"Ajouter un compte"_s));
    QVERIFY(button(window.get(), u"Compte"_s));
    QVERIFY(!button(window.get(), u"Ajouter un événement"_s));
    QVERIFY(named(window.get(), u"amorvelle.fr"_s));
    QVERIFY(named(window.get(), u"Les événements à Morvelle et ses environs"_s));
}

void TestWindow::theBrandIsTheHeadingOfTheWindow()
{
    const auto window = shownWindow();
    const auto *brand =
        QAccessible::queryAccessibleInterface(named(window.get(), u"amorvelle.fr"_s));
    QCOMPARE(brand->role(), QAccessible::Heading);
}

void TestWindow::anEventWithoutOwnerShowsItsButtonsWhenSignedOut()
{
    m_server.answer(reply({
        row(u"free"_s, 1),
        row(u"owned"_s, 2, {{u"user_id"_s, u"somebody"_s}}),
    }));
    const auto window = shownWindow();
    QTRY_VERIFY(named(window.get(), u"free"_s));
    QVERIFY(button(named(window.get(), u"free"_s), u"Modifier"_s));
    QVERIFY(button(named(window.get(), u"free"_s), u"Supprimer"_s));
    QVERIFY(!button(named(window.get(), u"owned"_s), u"Modifier"_s));
    QVERIFY(!button(named(window.get(), u"owned"_s), u"Supprimer"_s));
}

void TestWindow::clickingARowChoosesIt()
{
    m_server.answer(reply({row(u"a"_s, 1), row(u"b"_s, 2)}));
    const auto window = shownWindow();
    QTRY_VERIFY(named(window.get(), u"b"_s));
    auto *b = qobject_cast<EventRow *>(named(window.get(), u"b"_s));
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
}

int main(int argc, char *argv[])
{
    return runWithService<TestWindow>(argc, argv, installSectionListAccessibility);
}
#include "test_window.moc"
