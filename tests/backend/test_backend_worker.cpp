// What the backend does off the main thread.

#include "backend/FetchedEvents.h"
#include "backend/ReadReply.h"
#include "backend/SupabaseError.h"
#include "backend/TransportError.h"
#include "support/Await.h"
#include "support/EventLoopChecker.h"
#include "support/ThreadTestMain.h"

#include <QFile>
#include <QSemaphore>
#include <QTemporaryDir>
#include <QTest>

#include <atomic>
#include <functional>
#include <thread>
#include <utility>
#include <vector>

using namespace Qt::StringLiterals;

class TestBackendWorker : public QObject {
    Q_OBJECT

    QTemporaryDir m_folder;
    QString path() const { return m_folder.filePath(u"reply.json"_s); }

    /// The events of a reply with this body, read where such a long one is read.
    QCoro::Task<QList<Event>> events(Worker &worker, WaitingRoom &room, const QByteArray &body)
    {
        std::function read = [path = path()](const Reply &it) { return eventsOf(it, path); };
        return readReply(worker, room, {200, body}, std::move(read));
    }

    static QByteArray rows(int count)
    {
        QByteArray body = "[";
        for (int i = 0; i < count; ++i)
            body +=
                "{\"id\":\"" + QByteArray::number(i) + "\",\"titre\":\"Bal\",\"tags\":[\"a\"]},";
        body.back() = ']';
        return body;
    }

private Q_SLOTS:
    void aJobRunsElsewhereAndItsEndIsToldHere()
    {
        Worker worker;
        WaitingRoom room;
        std::thread::id ran;
        const auto outcome =
            outcomeOf(onWorker(worker, room, [&ran] { ran = std::this_thread::get_id(); }));
        QVERIFY(outcome.value);
        QVERIFY(ran != std::thread::id() && ran != std::this_thread::get_id());
    }

    void manyEventsAreReadWhileTheEventLoopTurns()
    {
        Worker worker;
        WaitingRoom room;
        const EventLoopChecker checker;
        const auto outcome = outcomeOf(events(worker, room, rows(20000)));
        QCOMPARE(outcome.failure(), QString());
        QCOMPARE(outcome.value->size(), 20000);
        QCOMPARE(outcome.value->last().id, u"19999"_s);
        QVERIFY(checker.ticks() > 0);
    }

    void manyLongRepliesMayWaitAtOnce()
    {
        const QByteArray body = rows(2000);
        QVERIFY(body.size() > mostReadHere);
        Worker worker;
        WaitingRoom room;
        std::vector<Outcome<QList<Event>>> outcomes(50);
        std::vector<QCoro::Task<void>> notes;
        for (auto &outcome : outcomes)
            notes.push_back(note(events(worker, room, body), outcome));
        for (const auto &outcome : outcomes)
            QTRY_VERIFY_WITH_TIMEOUT(outcome.value && outcome.value->size() == 2000, 60'000);
    }

    void whatCannotBeDecodedIsLeftBehind()
    {
        for (const qsizetype size : {qsizetype{10}, mostReadHere + 1}) {
            const QByteArray body = "{\"a\":\"" + QByteArray(size, 'x') + "\"}";
            Worker worker;
            WaitingRoom room;
            const auto outcome = outcomeOf(events(worker, room, body));
            const auto *const error = outcome.errorAs<SupabaseError>();
            QVERIFY(error != nullptr);
            QCOMPARE(error->kind(), SupabaseError::Case::decodingFailed);
            QFile file(path());
            QVERIFY(file.open(QIODevice::ReadOnly));
            QCOMPARE(file.readAll(), body);
        }
    }

    void whoeverWaitsWhenTheRoomClosesGoesOnWithAnError()
    {
        QSemaphore gate;
        std::atomic<bool> hasEnded = false;
        Outcome<void> outcome;
        QCoro::Task<void> noting;
        {
            Worker worker;
            WaitingRoom room;
            noting = note(onWorker(worker, room,
                                   [&] {
                                       gate.acquire();
                                       hasEnded = true;
                                   }),
                          outcome);
            QVERIFY(!outcome.isOver());
            room.close();
            QVERIFY(outcome.errorAs<TransportError>() != nullptr);
            gate.release();
        }
        QVERIFY(hasEnded);
    }

    void whoeverComesToAClosedRoomIsSentAway()
    {
        Worker worker;
        WaitingRoom room;
        room.close();
        std::atomic<bool> hasRun = false;
        const auto outcome = outcomeOf(onWorker(worker, room, [&hasRun] { hasRun = true; }));
        QVERIFY(outcome.errorAs<TransportError>() != nullptr);
        QVERIFY(!hasRun);
    }

    void aWaitEndsOnce()
    {
        WaitingRoom room;
        Outcome<void> outcome;
        std::function<void()> wake;
        int ends = 0;
        const auto waiting = [&]() -> QCoro::Task<void> {
            WaitingRoom::Seat seat(room);
            wake = seat.wake();
            co_await seat;
            ++ends;
        };
        const auto noting = note(waiting(), outcome);
        QVERIFY(!outcome.isOver());
        wake();
        QVERIFY(outcome.value);
        wake();
        room.close();
        QCOMPARE(ends, 1);
    }

    void aWaitThatIsOverAlreadyIsNone()
    {
        WaitingRoom room;
        const auto waiting = [&room]() -> QCoro::Task<void> {
            WaitingRoom::Seat seat(room);
            seat.wake()();
            co_await seat;
        };
        const auto task = waiting();
        QVERIFY(task.isReady());
    }
};

THREAD_TEST_MAIN(TestBackendWorker)
#include "test_backend_worker.moc"
