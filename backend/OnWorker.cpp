#include "backend/OnWorker.h"

#include <functional>
#include <utility>

QCoro::Task<void> onWorker(Worker &worker, WaitingRoom &room, std::function<void()> job)
{
    WaitingRoom::Seat end(room);
    // Moved on: what the job holds is to be freed on the worker's thread, not here.
    worker.run(std::move(job), &worker, end.wake());
    co_await end;
}
