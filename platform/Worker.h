#pragma once

#include <QObject>
#include <functional>
#include <memory>

/// The one place with threads: runs jobs off the main thread, in order of arrival.
///
/// A job must be self-contained: it owns or shares all it reads, touches no widget and no QObject,
/// and never throws (it hands its outcome on through what it captured), except that it may run out
/// of memory: it then ends there. Freeing large data is a job too: capture it by value and let it
/// go.
class Worker : public QObject {
    Q_OBJECT

public:
    explicit Worker(QObject *parent = nullptr);
    /// Finishes the jobs already accepted, then joins the thread; their `then` are dropped.
    ~Worker() override;

    /// Runs `job` on the worker's thread, then `then` on the thread that owns this worker (from its
    /// event loop), unless `context` was destroyed meanwhile. `ranOut` runs in its place when the
    /// job ran out of memory. To be called on the owner's thread.
    void run(std::function<void()> job, QObject *context, std::function<void()> then,
             std::function<void()> ranOut = {});
    /// As above for a job whose end nobody awaits.
    void run(std::function<void()> job);

protected:
    /// Only ever the worker's own: something has ended.
    void customEvent(QEvent *event) override;

private:
    struct Shared;
    std::unique_ptr<Shared> m_shared;
};
