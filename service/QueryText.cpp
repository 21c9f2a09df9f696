#include "service/QueryText.h"

#include <algorithm>
#include <cctype>
#include <charconv>
#include <cstddef>

namespace {

bool isNameLetter(char letter)
{
    const auto value = static_cast<unsigned char>(letter);
    return std::isalnum(value) != 0 || letter == '_' || letter == '$' || value >= 0x80;
}

/// What may follow a column's name and is understood by a hosted project alone.
void requirePlain(const std::string &select, std::size_t at)
{
    const char letter = at < select.size() ? select[at] : '\0';
    if (letter == '(' || letter == '!')
        throw notOffered("another table's rows inside of a row");
    if (letter == ':')
        throw notOffered("a column under another name or as another type");
    if (letter == '-' || letter == '.')
        throw notOffered("a part of a column, or a computation with it");
}

} // namespace

Reply notUnderstood(const std::string &what, const std::string &text, std::size_t at,
                    const std::string &expected)
{
    const std::string unexpected =
        at < text.size() ? "unexpected \"" + text.substr(at, 1) + '"' : "unexpected end of input";
    return restError(400, "PGRST100",
                     "\"failed to parse " + what + " (" + text + ")\" (line 1, column "
                         + std::to_string(at + 1) + ')',
                     unexpected + " expecting " + expected);
}

std::string columnOf(const std::string &table, const std::string &name)
{
    return table + '.' + quotedIdentifier(name);
}

std::size_t endOfName(const std::string &text, std::size_t start)
{
    if (start < text.size() && text[start] == '"') {
        const auto end = text.find('"', start + 1);
        return end == std::string::npos ? start : end + 1;
    }
    while (start < text.size() && isNameLetter(text[start]))
        ++start;
    return start;
}

std::string plainName(const std::string &name)
{
    return name.starts_with('"') ? name.substr(1, name.size() - 2) : name;
}

std::vector<std::string> columnNames(const std::string &columns)
{
    std::vector<std::string> names;
    for (std::size_t at = 0;; ++at) {
        const std::size_t end = endOfName(columns, at);
        if (end == at || (end < columns.size() && columns[end] != ','))
            throw notUnderstood("columns parameter", columns, end,
                                "field name (* or [a..z0..9_$])");
        names.push_back(plainName(columns.substr(at, end - at)));
        if (end == columns.size())
            return names;
        at = end;
    }
}

std::string columnsFrom(const std::string &select, const std::string &table)
{
    std::string columns;
    for (std::size_t at = 0;; ++at) {
        const bool isStar = at < select.size() && select[at] == '*';
        const std::size_t end = isStar ? at + 1 : endOfName(select, at);
        if (end > at)
            requirePlain(select, end);
        if (end == at || (end < select.size() && select[end] != ','))
            throw notUnderstood("select parameter", select, end, "field name (* or [a..z0..9_$])");
        columns += (columns.empty() ? "" : ", ")
            + (isStar ? table + ".*" : columnOf(table, plainName(select.substr(at, end - at))));
        if (end == select.size())
            return columns;
        at = end;
    }
}

std::string orderFrom(const std::string &order, const std::string &table)
{
    std::string terms;
    for (std::size_t at = 0;; ++at) {
        const std::size_t nameEnd = endOfName(order, at);
        if (nameEnd == at)
            throw notUnderstood("order", order, at, "field name (* or [a..z0..9_$])");
        terms += (terms.empty() ? "" : ", ")
            + columnOf(table, plainName(order.substr(at, nameEnd - at)));
        at = nameEnd;
        bool hasDirection = false;
        bool hasNulls = false;
        while (at < order.size() && order[at] == '.') {
            const std::size_t wordEnd = endOfName(order, at + 1);
            const std::string word = order.substr(at + 1, wordEnd - at - 1);
            if ((word == "asc" || word == "desc") && !hasDirection && !hasNulls) {
                terms += ' ' + word;
                hasDirection = true;
            } else if ((word == "nullsfirst" || word == "nullslast") && !hasNulls) {
                terms += word == "nullsfirst" ? " nulls first" : " nulls last";
                hasNulls = true;
            } else {
                throw notUnderstood("order", order, at + 1,
                                    "\"asc\", \"desc\", \"nullsfirst\" or \"nullslast\"");
            }
            at = wordEnd;
        }
        if (at == order.size())
            return terms;
        if (order[at] != ',')
            throw notUnderstood("order", order, at, "\",\" or end of input");
    }
}

std::optional<long> rowCountFrom(const std::multimap<std::string, std::string> &query,
                                 const std::string &name)
{
    const auto found = query.find(name);
    if (found == query.end())
        return std::nullopt;
    long count = 0;
    const char *end = found->second.data() + found->second.size();
    const auto [stop, error] = std::from_chars(found->second.data(), end, count);
    if (error != std::errc() || stop != end)
        return std::nullopt;
    if (count < 0 && name == "limit") {
        throw restError(416, "PGRST103", "Requested range not satisfiable",
                        "Limit should be greater than or equal to zero.");
    }
    return std::max(count, 0L);
}
