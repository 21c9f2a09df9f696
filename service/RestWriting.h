#pragma once

#include "service/RestReading.h"

#include <string>

/// POST, PATCH and DELETE of a table's rows, decided by the policies of the table. The reply
/// carries the written rows when the request prefers so.
Reply insertRows(const Rest &rest, const Call &call, const Caller &caller,
                 const std::string &table);
Reply updateRows(const Rest &rest, const Call &call, const Caller &caller,
                 const std::string &table);
Reply deleteRows(const Rest &rest, const Call &call, const Caller &caller,
                 const std::string &table);
