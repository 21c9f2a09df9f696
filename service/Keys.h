#pragma once

#include "service/DataFolder.h"

#include <string>

/// A project's secret and the two keys that are signed with it.
struct Keys {
    std::string secret;
    std::string anonKey; ///< the public key, given to every client
    std::string serviceRoleKey; ///< passes by row level security; for administration
};

/// Those of the data folder, made at the first call and readable by their owner alone. Throws
/// StartFailure.
Keys keysOf(const DataFolder &folder);

/// `count` random bytes from the system, as hexadecimal text.
std::string randomText(std::size_t count);
