#include "service/Filter.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <cstddef>
#include <string_view>
#include <vector>

namespace {

// Each level of "and(or(...))" costs stack here and in the database.
constexpr int deepestTree = 30;

std::string lowered(std::string text)
{
    std::transform(text.begin(), text.end(), text.begin(),
                   [](unsigned char letter) { return static_cast<char>(std::tolower(letter)); });
    return text;
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
        {"eq", "="},      {"neq", "<>"},
        {"gt", ">"},      {"gte", ">="},
        {"lt", "<"},      {"lte", "<="},
        {"like", "like"}, {"ilike", "ilike"},
        {"match", "~"},   {"imatch", "~*"},
        {"cs", "@>"},     {"cd", "<@"},
        {"ov", "&&"},     {"isdistinct", "is distinct from"}};
    static const std::map<std::string, std::string> states{{"null", "null"},
                                                           {"not_null", "not null"},
                                                           {"true", "true"},
                                                           {"false", "false"},
                                                           {"unknown", "unknown"}};
    if (const auto found = operators.find(operation); found != operators.end()) {
        std::string pattern = value;
        if (operation.ends_with("like"))
            std::replace(pattern.begin(), pattern.end(), '*', '%');
        return column + ' ' + found->second + ' ' + statement.bind(pattern);
    }
    if (operation == "is") {
        const auto state = states.find(lowered(value));
        if (state == states.end()) {
            throw notUnderstood("filter", filter, filter.size() - value.size(),
                                "isVal: (null, not_null, true, false, unknown)");
        }
        return column + " is " + state->second;
    }
    if (operation == "in") {
        std::string list;
        for (const std::string &member : membersOf(value, filter))
            list += (list.empty() ? "" : ", ") + statement.bind(member);
        return list.empty() ? "false" : column + " in (" + list + ')';
    }
    constexpr std::array<std::string_view, 9> known{"fts", "plfts", "phfts", "wfts", "sl",
                                                    "sr",  "nxr",   "nxl",   "adj"};
    const auto plain = operation.substr(0, operation.find('('));
    if (std::find(known.begin(), known.end(), plain) != known.end()
        || (plain != operation && operators.contains(plain))) {
        throw notOffered("the operator " + operation);
    }
    throw notUnderstood("filter", filter, 0,
                        "\"not\" or operator (eq, gt, gte, lt, lte, neq, like, ilike, match, "
                        "imatch, in, is, isdistinct, cs, cd, ov)");
}

/// "not.eq.5", as what it says of the column.
std::string filterFrom(const std::string &column, const std::string &filter, Statement &statement)
{
    const bool isNegated = filter.starts_with("not.");
    const std::size_t start = isNegated ? 4 : 0;
    const auto dot = filter.find('.', start);
    const std::string operation = dot == std::string::npos ? "" : filter.substr(start, dot - start);
    const std::string value = dot == std::string::npos ? "" : filter.substr(dot + 1);
    const std::string condition = comparison(column, operation, value, filter, statement);
    return isNegated ? "not (" + condition + ')' : condition;
}

/// Reads "(a.eq.1,not.and(b.is.null,c.in.(1,2)))".
class LogicTree {
public:
    LogicTree(const std::string &text, const std::string &table, Statement &statement)
        : m_text(text)
        , m_table(table)
        , m_statement(statement)
    {
    }

    std::string read(const std::string &joint)
    {
        const std::string condition = members(joint, 1);
        if (m_at != m_text.size())
            throw unexpected("end of input");
        return condition;
    }

private:
    Reply unexpected(const std::string &expected) const
    {
        return notUnderstood("logic tree", m_text, m_at, expected);
    }
    bool takes(std::string_view word)
    {
        if (m_text.compare(m_at, word.size(), word) != 0)
            return false;
        m_at += word.size();
        return true;
    }
    std::string members(const std::string &joint, int depth)
    {
        if (depth > deepestTree)
            throw unexpected("a tree of fewer levels");
        if (!takes("("))
            throw unexpected("\"(\"");
        std::string condition = member(depth);
        while (takes(","))
            condition += ' ' + joint + ' ' + member(depth);
        if (!takes(")"))
            throw unexpected("\",\" or \")\"");
        return '(' + condition + ')';
    }
    std::string member(int depth)
    {
        const auto start = m_at;
        const bool isNegated = takes("not.");
        const char *before = isNegated ? "not " : "";
        for (const char *joint : {"and", "or"}) {
            const auto here = m_at;
            if (takes(joint) && m_at < m_text.size() && m_text[m_at] == '(')
                return before + members(joint, depth + 1);
            m_at = here;
        }
        m_at = start;
        const auto end = endOfName(m_text, m_at);
        if (end == m_at)
            throw unexpected("field name (* or [a..z0..9_$]), \"and\" or \"or\"");
        const std::string column = columnOf(m_table, plainName(m_text.substr(m_at, end - m_at)));
        m_at = end;
        if (!takes("."))
            throw unexpected("delimiter (.)");
        return filterFrom(column, filter(), m_statement);
    }
    /// "eq.a" up to the end of this member; a value in quotation marks comes without them.
    std::string filter()
    {
        std::string text;
        std::string operation;
        while (m_at < m_text.size() && m_text[m_at] != '.' && m_text[m_at] != ','
               && m_text[m_at] != ')') {
            operation += m_text[m_at++];
        }
        if (operation == "not" && takes("."))
            return "not." + filter();
        if (!takes("."))
            return operation;
        text = operation + '.';
        const char first = m_at < m_text.size() ? m_text[m_at] : '\0';
        if (first == '"')
            return text + quoted();
        if ((first == '(' && operation == "in") || first == '{')
            return text + enclosed(first == '(' ? ')' : '}');
        const auto end = std::min(m_text.find_first_of(",)", m_at), m_text.size());
        text += m_text.substr(m_at, end - m_at);
        m_at = end;
        return text;
    }
    std::string quoted()
    {
        std::string value;
        for (++m_at; m_at < m_text.size() && m_text[m_at] != '"'; ++m_at) {
            if (m_text[m_at] == '\\' && m_at + 1 < m_text.size())
                ++m_at;
            value += m_text[m_at];
        }
        if (!takes("\""))
            throw unexpected("\"\\\"\"");
        return value;
    }
    /// A list as it stands, with its marks, in which a bracket may be quoted.
    std::string enclosed(char closing)
    {
        const auto start = m_at;
        bool isQuoted = false;
        for (; m_at < m_text.size() && (isQuoted || m_text[m_at] != closing); ++m_at) {
            if (m_text[m_at] == '\\')
                ++m_at;
            else if (m_text[m_at] == '"')
                isQuoted = !isQuoted;
        }
        if (m_at >= m_text.size())
            throw unexpected(std::string(1, closing));
        ++m_at;
        return m_text.substr(start, m_at - start);
    }

    const std::string &m_text;
    const std::string &m_table;
    Statement &m_statement;
    std::size_t m_at = 0;
};

std::string conditionOf(const std::string &name, const std::string &filter,
                        const std::string &table, Statement &statement)
{
    const bool isNegated = name.starts_with("not.");
    const std::string joint = isNegated ? name.substr(4) : name;
    if (joint == "and" || joint == "or")
        return (isNegated ? "not " : "") + LogicTree(filter, table, statement).read(joint);
    const auto end = endOfName(name, 0);
    if (name.compare(end, 2, "->") == 0)
        throw notOffered("a path inside of a JSON column");
    if (name.compare(end, 1, ".") == 0)
        throw notOffered("a filter on another table");
    if (end != name.size() || name.empty())
        throw notUnderstood("tree path", name, end, "field name (* or [a..z0..9_$])");
    return filterFrom(columnOf(table, plainName(name)), filter, statement);
}

} // namespace

std::string conditionFrom(const std::multimap<std::string, std::string> &query,
                          const std::string &table, Statement &statement)
{
    constexpr std::array<std::string_view, 7> reserved{"select",  "order",       "limit", "offset",
                                                       "columns", "on_conflict", "apikey"};
    std::string condition;
    for (const auto &[name, filter] : query) {
        if (std::find(reserved.begin(), reserved.end(), name) == reserved.end()) {
            condition +=
                (condition.empty() ? "" : " and ") + conditionOf(name, filter, table, statement);
        }
    }
    return condition;
}
