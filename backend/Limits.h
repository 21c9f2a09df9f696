#pragma once

#include <QtGlobal>
#include <chrono>

/// How much is waited and taken before a reply is given up.
struct Limits {
    /// How long nothing may come, or go, before the service counts as silent; not a bound on the
    /// whole transfer.
    std::chrono::milliseconds silence = std::chrono::seconds(60);
    /// How many bytes a reply's body may have, as it arrives and after inflating.
    qint64 largestReply = qint64{256} * 1024 * 1024;
};
