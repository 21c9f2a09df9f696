#pragma once

#include "platform/Instant.h"

#include <optional>
#include <string>
#include <string_view>

// The rules of model/InstantReader.h once more, one after the other and without a thought of speed.

std::optional<Instant> slowInstant(std::string_view text);
std::optional<Instant> slowDay(std::string_view text);

/// An instant in GMT with milliseconds; none outside the years that four digits can write.
std::optional<std::string> written(Instant instant);
