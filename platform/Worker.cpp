#include "platform/Worker.h"

#include <QCoreApplication>
#include <QEvent>
#include <QPointer>

#include <condition_variable>
#include <deque>
#include <mutex>
#include <thread>
#include <utility>

namespace {

// What follows a job. It stays on the owner's side while the job runs, so that neither the context
// nor what `then` captured is ever touched by the worker's thread.
struct Continuation {
    QPointer<QObject> context;
    std::function<void()> then;
};

} // namespace

struct Worker::Shared {
    // Owner's thread only. Jobs end in the order of their arrival, hence the n-th that ends is
    // followed by the n-th of these.
    std::deque<Continuation> continuations;

    // Under the lock.
    std::mutex mutex;
    std::condition_variable wake;
    std::deque<std::function<void()>> jobs;
    qsizetype ended = 0;
    bool isClosing = false;

    std::thread thread;

    void work(Worker *owner);
};

void Worker::Shared::work(Worker *owner)
{
    for (;;) {
        std::function<void()> job;
        {
            std::unique_lock lock(mutex);
            wake.wait(lock, [this] { return isClosing || !jobs.empty(); });
            if (jobs.empty())
                return;
            job = std::move(jobs.front());
            jobs.pop_front();
        }
        job();
        // What the job captured dies here, before its end is told: on this thread.
        job = nullptr;

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

void Worker::run(std::function<void()> job, QObject *context, std::function<void()> then)
{
    Q_ASSERT(job);
    m_shared->continuations.push_back({context, std::move(then)});
    {
        const std::lock_guard lock(m_shared->mutex);
        m_shared->jobs.push_back(std::move(job));
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
        if (continuation.context && continuation.then)
            continuation.then();
    }
}
