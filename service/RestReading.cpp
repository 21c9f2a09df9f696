#include "service/RestReading.h"

#include "service/Filter.h"
#include "service/Preferences.h"
#include "service/QueryText.h"

#include <algorithm>
#include <charconv>
#include <optional>
#include <string>

namespace {

struct RowRange {
    long offset = 0;
    long limit = 0;
};

/// "5-9" or "5-", as the header "Range" has it; nothing when it is anything else, such as bytes.
std::optional<RowRange> headerRange(const std::string &text, long mostRows)
{
    const char *end = text.data() + text.size();
    RowRange range;
    auto [at, error] = std::from_chars(text.data(), end, range.offset);
    if (error != std::errc() || range.offset < 0 || at == end || *at != '-')
        return std::nullopt;
    range.limit = mostRows;
    if (++at != end) {
        long last = 0;
        const auto [stop, fault] = std::from_chars(at, end, last);
        if (fault != std::errc() || stop != end || last < 0)
            return std::nullopt;
        if (last < range.offset) {
            throw restError(416, "PGRST103", "Requested range not satisfiable",
                            "The lower boundary must be lower than or equal to the upper boundary "
                            "in the Range header.");
        }
        range.limit = std::min(mostRows, last - range.offset + 1);
    }
    return range;
}

RowRange rangeOf(const Call &call, long mostRows)
{
    const auto offset = rowCountFrom(call.query, "offset");
    const auto limit = rowCountFrom(call.query, "limit");
    if (!offset && !limit) {
        if (const auto range = headerRange(call.header("rows-range"), mostRows))
            return *range;
    }
    return {offset.value_or(0), std::min(limit.value_or(mostRows), mostRows)};
}

} // namespace

void actAs(Connection &connection, const Caller &caller)
{
    // Claims first: the role may not be allowed anything any more once it is taken on.
    connection.run("select set_config('request.jwt.claims', $1, true), "
                   "set_config('role', $2, true)",
                   {caller.claims, caller.role});
}

void requireTable(const Rest &rest, const std::string &table)
{
    if (!rest.catalogue.hasTable(table)) {
        throw restError(404, "PGRST205",
                        "Could not find the table 'public." + table + "' in the schema cache");
    }
}

std::string rowsType(bool isSingle)
{
    return isSingle ? "application/vnd.pgrst.object+json; charset=utf-8"
                    : "application/json; charset=utf-8";
}

Reply readRows(const Rest &rest, const Call &call, const Caller &caller, const std::string &table)
{
    requireTable(rest, table);
    const bool isSingle = wantsSingleObject(call);
    const Preferences preferences = preferencesOf(call);

    const auto value = [&](const char *name, const char *fallback) {
        const auto found = call.query.find(name);
        return found == call.query.end() ? std::string(fallback) : found->second;
    };
    const RowRange range = rangeOf(call, rest.maxRows);
    const std::string name = quotedIdentifier(table);
    const std::string order = value("order", "");
    Statement statement;
    const std::string condition = conditionFrom(call.query, name, statement);
    const std::string where =
        " from public." + name + (condition.empty() ? "" : " where " + condition);
    statement.text = "select coalesce(json_agg(page), '[]')::text, json_agg(page)->0, count(*), "
        + (preferences.count ? "(select count(*)" + where + ')' : "null") + " from (select "
        + columnsFrom(value("select", "*"), name) + where
        + (order.empty() ? "" : " order by " + orderFrom(order, name)) + " limit "
        + std::to_string(range.limit) + " offset " + std::to_string(range.offset) + ") as page";

    const auto session = rest.sessions.take();
    Transaction transaction(*session, "begin read only");
    actAs(*session, caller);
    const Rows rows = session->run(statement.text, statement.values);
    transaction.commit();

    const long count = std::stol(rows.text(0, 2));
    std::optional<long> total;
    if (preferences.count)
        total = std::stol(rows.text(0, 3));
    const auto tell = [&](Reply reply) {
        reply.headers.emplace_back("Content-Range", contentRange(range.offset, count, total));
        if (preferences.count)
            reply.headers.emplace_back("Preference-Applied", preferences.applied());
        return reply;
    };
    if (total && range.offset > *total) {
        throw tell(restError(416, "PGRST103", "Requested range not satisfiable",
                             "An offset of " + std::to_string(range.offset)
                                 + " was requested, but there are only " + std::to_string(*total)
                                 + " rows."));
    }
    if (isSingle)
        requireSingle(count);
    Reply reply;
    reply.status = total && count < *total ? 206 : 200;
    reply.body = rows.text(0, isSingle ? 1 : 0);
    reply.contentType = rowsType(isSingle);
    return tell(reply);
}
