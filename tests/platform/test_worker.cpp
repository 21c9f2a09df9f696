#include "platform/Worker.h"
#include "support/ThreadTestMain.h"

#include <QSemaphore>
#include <QSignalSpy>
#include <QTest>
#include <QThread>
#include <QTimer>

#include <atomic>
#include <functional>
#include <memory>
#include <thread>

namespace {

// Notes which thread destroyed it.
class Tracked {
public:
    explicit Tracked(std::atomic<std::thread::id> &destroyer)
        : m_destroyer(destroyer)
    {
    }
    ~Tracked() { m_destroyer = std::this_thread::get_id(); }
    Q_DISABLE_COPY_MOVE(Tracked)

private:
    std::atomic<std::thread::id> &m_destroyer;
};

} // namespace

class TestWorker : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void jobsRunOffTheMainThreadAndEndOnIt();
    void jobsRunInTheOrderOfTheirArrival();
    void aDestroyedContextIsNotCalled();
    void whatAJobHoldsIsFreedOffTheMainThread();
    void whatFollowsAJobIsFreedOnTheMainThread();
    void aJobMayBeStartedFromTheEndOfAnother();
    void nobodyNeedsToAwaitAJob();
    void closingFinishesTheJobsAndDropsWhatFollows();
    void theMainThreadGoesOnWhileAJobRuns();
};

void TestWorker::jobsRunOffTheMainThreadAndEndOnIt()
{
    Worker worker;
    QObject context;
    std::atomic<std::thread::id> workedOn;
    bool hasEnded = false;
    worker.run([&] { workedOn = std::this_thread::get_id(); }, &context,
               [&] {
                   hasEnded = true;
                   QCOMPARE(QThread::currentThread(), worker.thread());
               });
    QVERIFY(!hasEnded);
    QTRY_VERIFY(hasEnded);
    QVERIFY(workedOn != std::this_thread::get_id());
}

void TestWorker::jobsRunInTheOrderOfTheirArrival()
{
    Worker worker;
    QObject context;
    // Written by the worker alone, until the last `then` has been told of.
    QList<int> worked;
    QList<int> ended;
    QList<int> wanted;
    for (int i = 0; i < 1'000; ++i) {
        wanted.append(i);
        worker.run([&worked, i] { worked.append(i); }, &context, [&ended, i] { ended.append(i); });
    }
    QTRY_COMPARE(ended, wanted);
    QCOMPARE(worked, wanted);
}

void TestWorker::aDestroyedContextIsNotCalled()
{
    Worker worker;
    QObject context;
    auto shortLived = std::make_unique<QObject>();
    QSemaphore gate;
    bool isCalled = false;
    bool hasEnded = false;
    worker.run([&] { gate.acquire(); }, shortLived.get(), [&] { isCalled = true; });
    worker.run([] {}, &context, [&] { hasEnded = true; });
    shortLived.reset();
    gate.release();
    QTRY_VERIFY(hasEnded);
    QVERIFY(!isCalled);
}

void TestWorker::whatAJobHoldsIsFreedOffTheMainThread()
{
    Worker worker;
    QObject context;
    std::atomic<std::thread::id> destroyer;
    bool hasEnded = false;
    worker.run([held = std::make_shared<Tracked>(destroyer)] { Q_UNUSED(held); }, &context,
               [&] {
                   // Before the end is told, not at some later time.
                   QVERIFY(destroyer.load() != std::thread::id());
                   hasEnded = true;
               });
    QTRY_VERIFY(hasEnded);
    QVERIFY(destroyer != std::this_thread::get_id());
}

void TestWorker::whatFollowsAJobIsFreedOnTheMainThread()
{
    Worker worker;
    QObject context;
    std::atomic<std::thread::id> called;
    std::atomic<std::thread::id> dropped;
    auto shortLived = std::make_unique<QObject>();
    worker.run([] {}, &context, [held = std::make_shared<Tracked>(called)] { Q_UNUSED(held); });
    worker.run([] {}, shortLived.get(),
               [held = std::make_shared<Tracked>(dropped)] { Q_UNUSED(held); });
    shortLived.reset();
    QTRY_VERIFY(called.load() == std::this_thread::get_id());
    QTRY_VERIFY(dropped.load() == std::this_thread::get_id());
}

void TestWorker::aJobMayBeStartedFromTheEndOfAnother()
{
    Worker worker;
    QObject context;
    int left = 100;
    std::function<void()> next = [&] {
        if (--left > 0)
            worker.run([] {}, &context, next);
    };
    worker.run([] {}, &context, next);
    QTRY_COMPARE(left, 0);
}

void TestWorker::nobodyNeedsToAwaitAJob()
{
    Worker worker;
    QSemaphore done;
    worker.run([&] { done.release(); });
    done.acquire();
    bool hasEnded = false;
    QObject context;
    worker.run([] {}, &context, [&] { hasEnded = true; });
    QTRY_VERIFY(hasEnded);
}

void TestWorker::closingFinishesTheJobsAndDropsWhatFollows()
{
    QObject context;
    std::atomic<int> worked = 0;
    std::atomic<std::thread::id> destroyer;
    bool isCalled = false;
    {
        Worker worker;
        for (int i = 0; i < 50; ++i) {
            worker.run([&] { ++worked; }, &context,
                       [&, held = std::make_shared<Tracked>(destroyer)] { isCalled = true; });
        }
    }
    QCOMPARE(worked.load(), 50);
    QVERIFY(destroyer.load() == std::this_thread::get_id());
    QCoreApplication::processEvents();
    QVERIFY(!isCalled);
}

void TestWorker::theMainThreadGoesOnWhileAJobRuns()
{
    Worker worker;
    QObject context;
    QSemaphore gate;
    bool hasEnded = false;
    int ticks = 0;
    QTimer timer;
    connect(&timer, &QTimer::timeout, &context, [&] {
        QVERIFY(!hasEnded);
        if (++ticks == 3) {
            timer.stop();
            gate.release();
        }
    });
    timer.start(0);
    worker.run([&] { gate.acquire(); }, &context, [&] { hasEnded = true; });
    QTRY_VERIFY(hasEnded);
    QCOMPARE(ticks, 3);
}

THREAD_TEST_MAIN(TestWorker)
#include "test_worker.moc"
