#pragma once

#include "service/DataFolder.h"

#include <cstddef>
#include <string>

/// A project's keys, and the secret that the tokens of its accounts are signed with.
struct Keys {
    std::string tokenSecret;
    std::string publishable; ///< given to every client; what it allows is up to the table's rules
    std::string secret; ///< passes by row level security; for administration
};

/// Those of the data folder, made at the first call and readable by their owner alone. Throws
/// StartFailure.
Keys keysOf(const DataFolder &folder);

/// `count` random bytes from the system, as hexadecimal text.
std::string randomText(std::size_t count);
