// A window that is open while one day ends and the next begins.

#include "support/MembersWindow.h"
#include "support/MovableClock.h"

#include <QPointer>

#include <memory>

using namespace Qt::StringLiterals;
using namespace WindowTest;
using namespace MembersWindow;

namespace {

/// The last evening of a month, in the user's time.
const QDate lastDay(2026, 11, 30);

QJsonObject rowAt(const QString &id, const QDateTime &start)
{
    return row(id, 0, {{u"starts_at"_s, start.toUTC().toString(Qt::ISODate)}});
}

/// The person turns to another window and back.
void comeBackTo(QWidget *window)
{
    QWidget other;
    other.show();
    other.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&other));
    window->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(window));
}

} // namespace

class TestWindowMidnight : public QObject {
    Q_OBJECT

    HttpServer &m_server;
    std::unique_ptr<MovableClock> m_clock;

public:
    explicit TestWindowMidnight(HttpServer &server)
        : m_server(server)
    {
    }

private Q_SLOTS:
    void init()
    {
        m_clock = std::make_unique<MovableClock>();
        MovableClock::put(lastDay.startOfDay().addSecs(23 * 3600 + 59 * 60));
        QCOMPARE(QDate::currentDate(), lastDay); // the toolkit goes by this clock
    }
    void cleanup() { m_clock.reset(); }

    void whoComesBackAfterMidnightSeesTheNewDay()
    {
        m_server.answer(reply({rowAt(u"tonight"_s, lastDay.startOfDay().addSecs(20 * 3600)),
                               rowAt(u"tomorrow"_s, lastDay.addDays(1).startOfDay())}));
        const auto window = shownWindow();
        QTRY_VERIFY(named(window.get(), u"tonight"_s));
        const auto asked = m_server.requests().size();

        comeBackTo(window.get());
        QVERIFY(named(window.get(), u"tonight"_s));
        QCOMPARE(headings(shownList(window.get())),
                 QStringList({u"Novembre 2026"_s, u"Décembre 2026"_s}));

        MovableClock::put(lastDay.addDays(1).startOfDay());
        comeBackTo(window.get());
        QTRY_VERIFY(!named(window.get(), u"tonight"_s));
        QVERIFY(named(window.get(), u"tomorrow"_s));
        QCOMPARE(headings(shownList(window.get())), QStringList(u"Décembre 2026"_s));
        QTest::mouseClick(named(window.get(), u"Passés"_s), Qt::LeftButton);
        QVERIFY(named(window.get(), u"tonight"_s));
        QVERIFY(!named(window.get(), u"tomorrow"_s));
        // The events are the same: nobody was asked for them.
        QCOMPARE(m_server.requests().size(), asked);
    }

    void whateverChangesInTheWindowShowsTheNewDay()
    {
        m_server.answerWith([](const HttpRequest &request) {
            return request.method == "GET"
                ? reply({rowAt(u"tonight"_s, lastDay.startOfDay().addSecs(20 * 3600))})
                : granting();
        });
        const auto window = shownWindow();
        QTRY_VERIFY(named(window.get(), u"tonight"_s));
        MovableClock::put(lastDay.addDays(1).startOfDay());
        signInAs(u"a@b.fr"_s);
        QTRY_VERIFY(!named(window.get(), u"tonight"_s));
        QVERIFY(named(window.get(), u"No events found."_s));
        SupabaseClient::signOut();
    }

    void anotherMidnightIsSeenToo()
    {
        const QDate second = lastDay.addDays(1);
        m_server.answer(reply({rowAt(u"today"_s, lastDay.startOfDay()),
                               rowAt(u"tomorrow"_s, second.startOfDay()),
                               rowAt(u"later"_s, second.addDays(1).startOfDay())}));
        const auto window = shownWindow();
        QTRY_VERIFY(named(window.get(), u"today"_s));
        MovableClock::put(second.startOfDay());
        comeBackTo(window.get());
        QTRY_VERIFY(!named(window.get(), u"today"_s));
        QVERIFY(named(window.get(), u"tomorrow"_s));
        MovableClock::put(second.addDays(1).startOfDay());
        comeBackTo(window.get());
        QTRY_VERIFY(!named(window.get(), u"tomorrow"_s));
        QVERIFY(named(window.get(), u"later"_s));
    }

    void aFailedLoadKeepsThePlaceInTheListOverMidnight()
    {
        QJsonArray rows;
        for (int i = 0; i < 100; ++i)
            rows.append(rowAt(u"event %1"_s.arg(i), lastDay.addDays(1 + i).startOfDay()));
        m_server.answer(reply(rows));
        const auto window = shownWindow();
        QTRY_VERIFY(named(window.get(), u"event 0"_s));
        shownList(window.get())->showRow(60);
        QPointer<QWidget> seen;
        QTRY_VERIFY((seen = named(window.get(), u"event 60"_s)));
        const int y = seen->mapTo(window.get(), QPoint()).y();

        m_server.answer(HttpAnswer::whole(503, {}));
        QTest::keyClick(window.get(), Qt::Key_F5);
        QTRY_VERIFY(named(window.get(), u"Failed to load events: HTTP 503"_s));
        MovableClock::put(lastDay.addDays(1).startOfDay());
        comeBackTo(window.get());
        QVERIFY(named(window.get(), u"Failed to load events: HTTP 503"_s));

        m_server.answer(reply(rows));
        QTest::keyClick(window.get(), Qt::Key_F5);
        QTRY_VERIFY((seen = named(window.get(), u"event 60"_s)));
        QCOMPARE(seen->mapTo(window.get(), QPoint()).y(), y);
    }
};

int main(int argc, char *argv[])
{
    return runWithService<TestWindowMidnight>(argc, argv, installSectionListAccessibility);
}

#include "test_window_midnight.moc"
