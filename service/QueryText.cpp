#include "service/QueryText.h"

#include <algorithm>
#include <cctype>
#include <charconv>

namespace {

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

bool isNameLetter(char letter)
{
    const auto value = static_cast<unsigned char>(letter);
    return std::isalnum(value) != 0 || letter == '_' || letter == '$' || value >= 0x80;
}

std::size_t endOfName(const std::string &text, std::size_t start)
{
    const auto stop = std::find_if_not(text.begin() + static_cast<std::ptrdiff_t>(start),
                                       text.end(), isNameLetter);
    return static_cast<std::size_t>(stop - text.begin());
}

std::string columnOf(const std::string &table, const std::string &name)
{
    return table + '.' + quotedIdentifier(name);
}

/// "(a,"b,c",d)" as its members.
std::vector<std::string> membersOf(const std::string &list, const std::string &filter)
{
    if (list.size() < 2 || list.front() != '(' || list.back() != ')')
        throw notUnderstood("filter", filter, filter.size() - list.size(), "\"(\"");
    std::vector<std::string> members;
    std::string member;
    bool isQuoted = false;
    for (std::size_t at = 1; at + 1 < list.size(); ++at) {
        if (isQuoted && list[at] == '\\' && at + 2 < list.size()) {
            member += list[++at];
        } else if (list[at] == '"') {
            isQuoted = !isQuoted;
        } else if (list[at] == ',' && !isQuoted) {
            members.push_back(member);
            member.clear();
        } else {
            member += list[at];
        }
    }
    if (list.size() > 2)
        members.push_back(member);
    return members;
}

std::string comparison(const std::string &column, const std::string &operation,
                       const std::string &value, const std::string &filter, Statement &statement)
{
    static const std::map<std::string, std::string> operators{
        {"eq", "="}, {"neq", "<>"}, {"gt", ">"},      {"gte", ">="},
        {"lt", "<"}, {"lte", "<="}, {"like", "like"}, {"ilike", "ilike"}};
    static const std::map<std::string, std::string> states{
        {"null", "null"}, {"true", "true"}, {"false", "false"}, {"unknown", "unknown"}};
    if (const auto found = operators.find(operation); found != operators.end()) {
        std::string pattern = value;
        if (operation.ends_with("like"))
            std::replace(pattern.begin(), pattern.end(), '*', '%');
        return column + ' ' + found->second + ' ' + statement.bind(pattern);
    }
    if (operation == "is") {
        const auto state = states.find(value);
        if (state == states.end()) {
            throw notUnderstood("filter", filter, filter.size() - value.size(),
                                "null or trilean value (unknown, null, true, false)");
        }
        return column + " is " + state->second;
    }
    if (operation == "in") {
        std::string list;
        for (const std::string &member : membersOf(value, filter))
            list += (list.empty() ? "" : ", ") + statement.bind(member);
        return list.empty() ? "false" : column + " in (" + list + ')';
    }
    throw notUnderstood("filter", filter, 0,
                        "\"not\" or operator (eq, gt, gte, lt, lte, neq, like, ilike, in, is)");
}

std::string filterFrom(const std::string &name, const std::string &filter, const std::string &table,
                       Statement &statement)
{
    const bool isNegated = filter.starts_with("not.");
    const std::size_t start = isNegated ? 4 : 0;
    const auto dot = filter.find('.', start);
    const std::string operation = dot == std::string::npos ? "" : filter.substr(start, dot - start);
    const std::string value = dot == std::string::npos ? "" : filter.substr(dot + 1);
    if (endOfName(name, 0) != name.size() || name.empty()) {
        throw notUnderstood("tree path", name, endOfName(name, 0),
                            "field name (* or [a..z0..9_$])");
    }
    const std::string condition =
        comparison(columnOf(table, name), operation, value, filter, statement);
    return isNegated ? "not (" + condition + ')' : condition;
}

} // namespace

std::string Statement::bind(SqlValue value)
{
    values.push_back(std::move(value));
    return '$' + std::to_string(values.size());
}

std::string columnsFrom(const std::string &select, const std::string &table)
{
    std::string columns;
    for (std::size_t at = 0;; ++at) {
        const bool isStar = at < select.size() && select[at] == '*';
        const std::size_t end = isStar ? at + 1 : endOfName(select, at);
        if (end == at || (end < select.size() && select[end] != ','))
            throw notUnderstood("select parameter", select, end, "field name (* or [a..z0..9_$])");
        columns += (columns.empty() ? "" : ", ")
            + (isStar ? table + ".*" : columnOf(table, select.substr(at, end - at)));
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
        terms += (terms.empty() ? "" : ", ") + columnOf(table, order.substr(at, nameEnd - at));
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

std::string conditionFrom(const std::multimap<std::string, std::string> &query,
                          const std::string &table, Statement &statement)
{
    std::string condition;
    for (const auto &[name, filter] : query) {
        bool isFilter = true;
        for (const char *reserved :
             {"select", "order", "limit", "offset", "columns", "on_conflict", "apikey"}) {
            isFilter = isFilter && name != reserved;
        }
        if (isFilter) {
            condition +=
                (condition.empty() ? "" : " and ") + filterFrom(name, filter, table, statement);
        }
    }
    return condition;
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
    if (count < 0) {
        throw restError(416, "PGRST103", "Requested range not satisfiable",
                        (name == "limit" ? "Limit" : "Offset")
                            + std::string(" should be greater than or equal to zero."));
    }
    return count;
}
