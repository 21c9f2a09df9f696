#pragma once

#include <QString>

/// Why a body is not what was expected, in English, with the place of the fault, for example
/// "events[3].starts_at: Invalid date: 14/06/2025".
struct DecodingError {
    QString description;
    bool operator==(const DecodingError &) const = default;
};
