#pragma once

#include "service/Statement.h"

#include <map>
#include <string>

/// All filters of the query of an address, as a condition on the columns of `table` (a quoted
/// name); empty when there is none. Throws the Reply for what is not understood.
std::string conditionFrom(const std::multimap<std::string, std::string> &query,
                          const std::string &table, Statement &statement);
