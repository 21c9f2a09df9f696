// The process-wide client begins and ends with whoever keeps it.

#include "backend/SupabaseClient.h"
#include "backend/TransportError.h"
#include "backend/WaitingRoom.h"
#include "model/Event.h"
#include "model/EventCreatePayload.h"
#include "platform/NotificationCenter.h"
#include "support/Await.h"
#include "support/HttpServer.h"
#include "support/OwnHome.h"

#include <QCoreApplication>
#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

const QString closing = u"The request was given up because the application is closing."_s;

// What every operation says.
QStringList failures()
{
    return {outcomeOf(SupabaseClient::fetchEvents()).failure(),
            outcomeOf(SupabaseClient::createEvent({})).failure(),
            outcomeOf(SupabaseClient::updateEvent(u"1"_s, {})).failure(),
            outcomeOf(SupabaseClient::deleteEvent(u"1"_s)).failure(),
            outcomeOf(SupabaseClient::signIn(u"a@b.fr"_s, u"p"_s)).failure(),
            outcomeOf(SupabaseClient::signUp(u"a@b.fr"_s, u"p"_s)).failure()};
}

// Notes whether the wait ended well.
QCoro::Task<void> sit(WaitingRoom::Seat &seat, QString &end)
{
    try {
        co_await seat;
        end = u"done"_s;
    } catch (const TransportError &) {
        end = u"given up"_s;
    }
}

} // namespace

class TestBackendLifetime : public QObject {
    Q_OBJECT

    HttpServer &m_server;

public:
    explicit TestBackendLifetime(HttpServer &server)
        : m_server(server)
    {
    }

private Q_SLOTS:
    void beforeAndAfterNothingIsAsked()
    {
        m_server.answer(HttpAnswer::whole(200, "{\"access_token\":\"jeton\"}"));
        const QSignalSpy announced(&NotificationCenter::defaultCenter(),
                                   &NotificationCenter::posted);
        QCOMPARE(failures(), QStringList(6, closing));
        {
            const SupabaseClient::Lifetime client;
            QCOMPARE(outcomeOf(SupabaseClient::signIn(u"a@b.fr"_s, u"p"_s)).failure(), QString());
            QVERIFY(SupabaseClient::session().accessToken);
        }
        QCOMPARE(failures(), QStringList(6, closing));
        QVERIFY(!SupabaseClient::session().accessToken);
        SupabaseClient::signOut();
        SupabaseClient::clearSavedCredentials();
        QCOMPARE(m_server.requests().size(), 1);
        QCOMPARE(announced.count(), 1);
    }

    void whatIsOnItsWayEndsAndCannotBeginAgain()
    {
        m_server.answer(HttpAnswer::silence());
        const qsizetype before = m_server.requests().size();
        Outcome<QList<Event>> first;
        Outcome<QList<Event>> second;
        QCoro::Task<void> noting;
        QCoro::Task<void> notingAgain;
        {
            const SupabaseClient::Lifetime client;
            const auto again = [&] { notingAgain = note(SupabaseClient::fetchEvents(), second); };
            noting = note(SupabaseClient::fetchEvents(), first, again);
            QTRY_COMPARE(m_server.requests().size(), before + 1);
        }
        QCOMPARE(first.failure(), closing);
        QCOMPARE(second.failure(), closing);
        QCOMPARE(m_server.requests().size(), before + 1);
    }

    void whatIsOverIsNotGivenUpNorTheOtherWayRound()
    {
        WaitingRoom room;
        WaitingRoom::Seat early(room);
        WaitingRoom::Seat late(room);
        early.wake()();
        room.close();
        late.wake()();
        QString ofEarly;
        QString ofLate;
        const QCoro::Task<void> first = sit(early, ofEarly);
        const QCoro::Task<void> second = sit(late, ofLate);
        QCOMPARE(ofEarly, u"done"_s);
        QCOMPARE(ofLate, u"given up"_s);
    }
};

int main(int argc, char **argv)
{
    const OwnHome home;
    QCoreApplication application(argc, argv);
    HttpServer server;
    qputenv("SUPABASE_URL", server.base().toUtf8());
    qputenv("SUPABASE_KEY", "clef");
    TestBackendLifetime test(server);
    const int result = QTest::qExec(&test, argc, argv);
    server.hangUp();
    return result;
}

#include "test_backend_lifetime.moc"
