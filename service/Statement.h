#pragma once

#include "service/Database.h"
#include "service/Reply.h"

#include <cstddef>
#include <string>
#include <utility>
#include <vector>

/// A statement made from the query of an address. Names are quoted and values become parameters, so
/// nothing of what a client sends is ever read as SQL.
class Statement {
public:
    std::string text;
    std::vector<SqlValue> values;

    /// Adds a value and gives its placeholder.
    std::string bind(SqlValue value)
    {
        values.push_back(std::move(value));
        return '$' + std::to_string(values.size());
    }
};

/// The column's name with that of its table (a quoted one) before it.
std::string columnOf(const std::string &table, const std::string &name);

/// Where the name that begins at `start` ends; there itself when none begins. It may stand in
/// quotation marks.
std::size_t endOfName(const std::string &text, std::size_t start);
/// The name without its quotation marks.
std::string plainName(const std::string &name);

/// The Reply for a parameter that cannot be read: `text` is its value, `what` its kind, `at` the
/// place.
Reply notUnderstood(const std::string &what, const std::string &text, std::size_t at,
                    const std::string &expected);
