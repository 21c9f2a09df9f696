#include "backend/Unattended.h"

#include "backend/LocalizedError.h"

#include <QDebug>

#include <utility>

namespace {

QCoro::Task<void> toItsEnd(QCoro::Task<void> task)
{
    try {
        co_await task;
    } catch (...) {
        qWarning().noquote() << "A task has failed:" << currentFailure();
    }
}

} // namespace

void runUnattended(QCoro::Task<void> task)
{
    // A task that nobody holds any more runs on.
    const QCoro::Task<void> running = toItsEnd(std::move(task));
}
