#pragma once

#include <QtGlobal>

#include <compare>

/// A point in time: milliseconds since 1970-01-01T00:00:00 GMT, negative before it.
struct Instant {
    qint64 ms = 0;

    /// By the host's clock.
    static Instant now();
    auto operator<=>(const Instant &) const = default;
};
