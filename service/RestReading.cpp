#include "service/RestReading.h"

#include "service/QueryText.h"

#include <algorithm>
#include <array>
#include <sstream>

void actAs(Connection &connection, const Caller &caller)
{
    // Claims first: the role may not be allowed anything any more once it is taken on.
    connection.run("select set_config('request.jwt.claims', $1, true), "
                   "set_config('role', $2, true)",
                   {caller.claims, caller.role});
}

void requireTable(const Rest &rest, const std::string &table)
{
    if (!rest.catalogue.hasTable(table))
        throw restError(404, "42P01", "relation \"public." + table + "\" does not exist");
}

void requireJsonAccepted(const Call &call)
{
    const std::string accept = call.header("accept");
    std::istringstream types(accept);
    for (std::string type; std::getline(types, type, ',');) {
        type = type.substr(0, type.find(';'));
        std::erase(type, ' ');
        constexpr std::array<std::string_view, 3> offered{"*/*", "application/*",
                                                          "application/json"};
        if (std::find(offered.begin(), offered.end(), type) != offered.end())
            return;
    }
    if (!accept.empty())
        throw restError(406, "PGRST107", "None of these media types are available: " + accept);
}

Reply readRows(const Rest &rest, const Call &call, const Caller &caller, const std::string &table)
{
    requireTable(rest, table);
    requireJsonAccepted(call);

    const auto value = [&](const char *name, const char *fallback) {
        const auto found = call.query.find(name);
        return found == call.query.end() ? std::string(fallback) : found->second;
    };
    const long offset = rowCountFrom(call.query, "offset").value_or(0);
    const long limit =
        std::min<long>(rowCountFrom(call.query, "limit").value_or(rest.maxRows), rest.maxRows);
    const std::string name = quotedIdentifier(table);
    const std::string order = value("order", "");
    Statement statement;
    const std::string condition = conditionFrom(call.query, name, statement);
    statement.text = "select coalesce(json_agg(page), '[]')::text, count(*) from (select "
        + columnsFrom(value("select", "*"), name) + " from public." + name
        + (condition.empty() ? "" : " where " + condition)
        + (order.empty() ? "" : " order by " + orderFrom(order, name)) + " limit "
        + std::to_string(limit) + " offset " + std::to_string(offset) + ") as page";

    const auto session = rest.sessions.take();
    Transaction transaction(*session, "begin read only");
    actAs(*session, caller);
    const Rows rows = session->run(statement.text, statement.values);
    transaction.commit();

    Reply reply;
    reply.body = rows.text(0, 0);
    const long count = std::stol(rows.text(0, 1));
    reply.headers.emplace_back("Content-Range",
                               count == 0 ? "*/*"
                                          : std::to_string(offset) + '-'
                                       + std::to_string(offset + count - 1) + "/*");
    return reply;
}
