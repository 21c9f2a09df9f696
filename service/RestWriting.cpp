#include "service/RestWriting.h"

#include "service/QueryText.h"

#include <nlohmann/json.hpp>

namespace {

using Json = nlohmann::json;

/// What is to be written: rows as a JSON array, and the columns that they name.
struct Payload {
    std::string rows;
    std::vector<std::string> columns;
    bool isEmpty = false;
};

bool prefers(const Call &call, const std::string &preference)
{
    std::string header = ',' + call.header("prefer") + ',';
    std::erase(header, ' ');
    return header.find(',' + preference + ',') != std::string::npos;
}

std::vector<std::string> keysOf(const Json &row)
{
    std::vector<std::string> keys;
    for (const auto &entry : row.items())
        keys.push_back(entry.key());
    return keys;
}

Payload payloadFrom(const Rest &rest, const Call &call, const std::string &table)
{
    const std::string type = call.header("content-type");
    if (!type.empty() && !type.starts_with("application/json"))
        throw restError(400, "PGRST102", "Content-Type not acceptable: " + type);
    const Json body = Json::parse(call.body, nullptr, false);
    if (!body.is_object() && !body.is_array())
        throw restError(400, "PGRST102", "Empty or invalid json");
    Payload payload;
    // The text goes on as it came: PostgreSQL reads numbers exactly.
    payload.rows = body.is_object() ? '[' + call.body + ']' : call.body;
    payload.isEmpty = body.is_array() && body.empty();
    const Json rows = body.is_object() ? Json::array({body}) : body;
    if (!rows.empty())
        payload.columns = keysOf(rows.front());
    for (const Json &row : rows) {
        if (!row.is_object() || keysOf(row) != payload.columns)
            throw restError(400, "PGRST102", "All object keys must match");
    }
    for (const std::string &column : payload.columns) {
        if (!rest.catalogue.hasColumn(table, column)) {
            throw restError(400, "PGRST204",
                            "Could not find the '" + column + "' column of '" + table
                                + "' in the schema cache");
        }
    }
    return payload;
}

std::string listOf(const std::vector<std::string> &columns, const std::string &before = "")
{
    std::string list;
    for (const std::string &column : columns)
        list += (list.empty() ? "" : ", ") + before + quotedIdentifier(column);
    return list;
}

/// What is told about `count` written rows, shown as `rows` to those who prefer to see them.
Reply replyAfterWriting(const Call &call, const std::string &rows, long count)
{
    const bool showsRows = prefers(call, "return=representation");
    Reply reply;
    reply.status = call.verb == "POST" ? 201 : showsRows ? 200 : 204;
    reply.body = showsRows ? rows : "";
    const bool tellsRange = call.verb != "POST" && count > 0;
    reply.headers.emplace_back("Content-Range",
                               tellsRange ? "0-" + std::to_string(count - 1) + "/*" : "*/*");
    if (showsRows || prefers(call, "return=minimal")) {
        reply.headers.emplace_back("Preference-Applied",
                                   showsRows ? "return=representation" : "return=minimal");
    }
    return reply;
}

/// Runs a writing statement up to its RETURNING, and tells what was written.
Reply write(const Rest &rest, const Call &call, const Caller &caller, const std::string &table,
            const Statement &statement)
{
    const bool showsRows = prefers(call, "return=representation");
    if (showsRows)
        requireJsonAccepted(call);
    const auto select = call.query.find("select");
    const std::string shown = select == call.query.end() ? "*" : select->second;
    const std::string text = "with written as (" + statement.text + " returning "
        + (showsRows ? columnsFrom(shown, quotedIdentifier(table)) : "1")
        + ") select coalesce(json_agg(written), '[]')::text, count(*) from written";

    const auto session = rest.sessions.take();
    Transaction transaction(*session);
    actAs(*session, caller);
    const Rows rows = session->run(text, statement.values);
    transaction.commit();

    return replyAfterWriting(call, rows.text(0, 0), std::stol(rows.text(0, 1)));
}

/// A hosted project refuses to write a whole table by a forgotten filter.
std::string requiredCondition(const Call &call, const std::string &table, const char *verb,
                              Statement &statement)
{
    const std::string condition = conditionFrom(call.query, quotedIdentifier(table), statement);
    if (condition.empty())
        throw restError(400, "21000", std::string(verb) + " requires a WHERE clause");
    return condition;
}

} // namespace

Reply insertRows(const Rest &rest, const Call &call, const Caller &caller, const std::string &table)
{
    requireTable(rest, table);
    const Payload payload = payloadFrom(rest, call, table);
    const std::string target = "public." + quotedIdentifier(table);
    Statement statement;
    if (payload.isEmpty)
        return replyAfterWriting(call, "[]", 0);
    statement.text = "insert into " + target;
    if (payload.columns.empty()) {
        statement.text += " default values";
    } else {
        const std::string columns = listOf(payload.columns);
        statement.text += " (" + columns + ") select " + columns
            + " from json_populate_recordset(null::" + target + ", " + statement.bind(payload.rows)
            + "::json)";
    }
    return write(rest, call, caller, table, statement);
}

Reply updateRows(const Rest &rest, const Call &call, const Caller &caller, const std::string &table)
{
    requireTable(rest, table);
    const Payload payload = payloadFrom(rest, call, table);
    const std::string target = "public." + quotedIdentifier(table);
    Statement statement;
    const std::string condition = requiredCondition(call, table, "UPDATE", statement);
    if (payload.columns.empty())
        return replyAfterWriting(call, "[]", 0);
    statement.text = "update " + target + " set (" + listOf(payload.columns) + ") = row("
        + listOf(payload.columns, "change.")
        + ") from (select * from json_populate_recordset(null::" + target + ", "
        + statement.bind(payload.rows) + "::json) limit 1) as change where " + condition;
    return write(rest, call, caller, table, statement);
}

Reply deleteRows(const Rest &rest, const Call &call, const Caller &caller, const std::string &table)
{
    requireTable(rest, table);
    Statement statement;
    statement.text = "delete from public." + quotedIdentifier(table) + " where "
        + requiredCondition(call, table, "DELETE", statement);
    return write(rest, call, caller, table, statement);
}
