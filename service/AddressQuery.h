#pragma once

#include <map>
#include <string>

/// The query of an address (what follows "?"), decoded. Only the first "=" of a part is a
/// separator.
std::multimap<std::string, std::string> queryOf(const std::string &target);
