#pragma once

#include <QByteArray>
#include <variant>

/// Why a compressed body came to nothing.
enum class InflateFault {
    broken,
    tooLarge,
};

/// The content of `compressed`, one or more gzip members. Stops as soon as more than `largest`
/// bytes come out, whatever the input promises. A pure function that may run on any thread.
std::variant<QByteArray, InflateFault> inflateGzip(const QByteArray &compressed, qint64 largest);
