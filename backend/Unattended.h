#pragma once

#include <QCoro/QCoroTask>

/// Lets `task` run on by itself: nobody waits for its end, and it may outlive what began it. What a
/// task has to say to the person it says itself; an error that escapes it ends here, in the log.
/// For the main thread.
void runUnattended(QCoro::Task<void> task);
