#include "backend/OnWorker.h"

#include "backend/TransportError.h"

#include <functional>
#include <memory>
#include <utility>

QCoro::Task<void> onWorker(Worker &worker, WaitingRoom &room, std::function<void()> job)
{
    WaitingRoom::Seat end(room);
    const auto hasRunOut = std::make_shared<bool>(false);
    const auto runOut = [hasRunOut, wake = end.wake()] {
        *hasRunOut = true;
        wake();
    };
    // Moved on: what the job holds is to be freed on the worker's thread, not here.
    worker.run(std::move(job), &worker, end.wake(), runOut);
    co_await end;
    if (*hasRunOut)
        throw TransportError::ofMemory();
}
