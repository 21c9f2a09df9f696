#pragma once

#include "service/Database.h"
#include "service/Reply.h"

#include <map>
#include <string>
#include <vector>

/// Parts of a statement made from the query of an address. Names are quoted and values become
/// parameters, so nothing of what a client sends is ever read as SQL. The parsing functions throw
/// the Reply for what is not understood.
class Statement {
public:
    std::string text;
    std::vector<SqlValue> values;

    /// Adds a value and gives its placeholder.
    std::string bind(SqlValue value);
};

/// "id,titre" or "*", as the columns of `table` (a quoted name).
std::string columnsFrom(const std::string &select, const std::string &table);

/// "starts_at.asc.nullslast,id", as what follows ORDER BY.
std::string orderFrom(const std::string &order, const std::string &table);

/// All filters of the query, as a condition; empty when there is none.
std::string conditionFrom(const std::multimap<std::string, std::string> &query,
                          const std::string &table, Statement &statement);

/// A number of rows; nothing when the text is no number. A negative one is refused.
std::optional<long> rowCountFrom(const std::multimap<std::string, std::string> &query,
                                 const std::string &name);
