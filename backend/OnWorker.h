#pragma once

#include "backend/WaitingRoom.h"
#include "platform/Worker.h"

#include <functional>

/// Runs `job` on the worker's thread and goes on when it has ended. Throws TransportError when the
/// room closes before (the job then ends by itself) and when the job ran out of memory. The job
/// follows the rules of Worker::run.
QCoro::Task<void> onWorker(Worker &worker, WaitingRoom &room, std::function<void()> job);
