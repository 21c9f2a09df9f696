#include "platform/Worker.h"

#include <QCoreApplication>
#include <QEvent>
#include <QPointer>

#include <condition_variable>
#include <deque>
#include <mutex>
#include <new>
#include <thread>
#include <utility>

namespace {

// What follows a job. It stays on the owner's side while the job runs, so that neither the context
// nor what `then` captured is ever touched by the worker's thread.
struct Continuation {
    QPointer<QObject> context;
    std::function<void()> then;
    std::function<void()> ranOut;
    std::shared_ptr<const bool> hasRunOut;
};

struct Job {
    std::function<void()> run;
    // Made beforehand: where memory runs out there is none to tell it with.
    std::shared_ptr<bool> hasRunOut;
};

} // namespace

struct Worker::Shared {
    // Owner's thread only. Jobs end in the order of their arrival, hence the n-th that ends is
    // followed by the n-th of these.
    std::deque<Continuation> continuations;

    // Under the lock.
    std::mutex mutex;
    std::condition_variable wake;
    std::deque<Job> jobs;
    qsizetype ended = 0;
    bool isClosing = false;

    std::thread thread;

    void work(Worker *owner);
};

void Worker::Shared::work(Worker *owner)
{
    for (;;) {
        Job job;
        {
            std::unique_lock lock(mutex);
            wake.wait(lock, [this] { return isClosing || !jobs.empty(); });
            if (jobs.empty())
                return;
            job = std::move(jobs.front());
            jobs.pop_front();
        }
        try {
            job.run();
        } catch (const std::bad_alloc &) {
            *job.hasRunOut = true;
        }
        // What the job captured dies here, before its end is told: on this thread.
        job = {};

        // The event is posted under the lock, which event() takes before the event is deleted: the
        // event's memory passes between the threads in an order that a race detector can see.
        const std::lock_guard lock(mutex);
        if (++ended == 1)
            QCoreApplication::postEvent(owner, new QEvent(QEvent::User));
    }
}

Worker::Worker(QObject *parent)
    : QObject(parent)
    , m_shared(std::make_unique<Shared>())
{
    m_shared->thread = std::thread([this] { m_shared->work(this); });
}

Worker::~Worker()
{
    {
        const std::lock_guard lock(m_shared->mutex);
        m_shared->isClosing = true;
    }
    m_shared->wake.notify_one();
    m_shared->thread.join();
}

void Worker::run(std::function<void()> job, QObject *context, std::function<void()> then,
                 std::function<void()> ranOut)
{
    Q_ASSERT(job);
    auto hasRunOut = std::make_shared<bool>(false);
    m_shared->continuations.push_back({context, std::move(then), std::move(ranOut), hasRunOut});
    {
        const std::lock_guard lock(m_shared->mutex);
        m_shared->jobs.push_back({std::move(job), std::move(hasRunOut)});
    }
    m_shared->wake.notify_one();
}

void Worker::run(std::function<void()> job)
{
    run(std::move(job), nullptr, {});
}

void Worker::customEvent(QEvent *)
{
    qsizetype ended = 0;
    {
        const std::lock_guard lock(m_shared->mutex);
        ended = std::exchange(m_shared->ended, 0);
    }
    for (; ended > 0; --ended) {
        // Taken out before it runs: `then` may well hand in the next job.
        const Continuation continuation = std::move(m_shared->continuations.front());
        m_shared->continuations.pop_front();
        const auto &next = *continuation.hasRunOut ? continuation.ranOut : continuation.then;
        if (continuation.context && next)
            next();
    }
}
