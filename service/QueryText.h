#pragma once

#include "service/Statement.h"

#include <map>
#include <optional>
#include <string>
#include <vector>

// Parts of a statement made from the query of an address. All throw the Reply for what is not
// understood.

/// "id,titre" or "*", as the columns of `table` (a quoted name).
std::string columnsFrom(const std::string &select, const std::string &table);

/// "id,"titre"", as plain names.
std::vector<std::string> columnNames(const std::string &columns);

/// "starts_at.asc.nullslast,id", as what follows ORDER BY.
std::string orderFrom(const std::string &order, const std::string &table);

/// A number of rows; nothing when the text is no number. A negative limit is
/// refused, a negative offset is none.
std::optional<long> rowCountFrom(const std::multimap<std::string, std::string> &query,
                                 const std::string &name);
