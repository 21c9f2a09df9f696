#pragma once

#include "platform/Instant.h"

#include <QStringView>
#include <optional>
#include <string_view>

/// The instant that `text` (UTF-8) writes in ISO 8601; none when it is anything else.
///
/// Read are 2025-06-14T18:30:00Z, the same with a fraction (of any length, cut to milliseconds),
/// and the bare day 2025-06-14 (midnight GMT). The zone is Z, or an offset as +02, +0200, +02:00
/// or, as PostgreSQL writes those of old local times, +00:09:21; GMT or UTC may stand before an
/// offset or in place of Z, in either case. The text is read whole, nothing may stand before or
/// behind it.
///
/// Days go by the Gregorian calendar for all time. One past the end of its month (up to the 31st)
/// runs on into the next, 24:00:00 is the next midnight and a leap second the next minute.
/// Pure; allocates nothing.
std::optional<Instant> readInstant(std::string_view text);

/// Midnight GMT of the day that `text` is in the form 2025-06-14, by the rules above; none when it
/// is anything else.
std::optional<Instant> readDay(QStringView text);
