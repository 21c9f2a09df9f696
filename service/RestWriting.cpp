#include "service/RestWriting.h"

#include "service/Filter.h"
#include "service/Json.h"
#include "service/Preferences.h"
#include "service/QueryText.h"

#include <algorithm>
#include <optional>
#include <string>
#include <vector>

namespace {

using Json = nlohmann::json;

/// What is to be written: rows as a JSON array, and the columns that they name.
struct Payload {
    std::string rows;
    std::vector<std::string> columns;
    bool isEmpty = false;
};

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
    const Json body = parsedJson(call.body);
    if (!body.is_object() && !body.is_array())
        throw restError(400, "PGRST102", "Empty or invalid json");
    Payload payload;
    // The text goes on as it came: PostgreSQL reads numbers exactly.
    payload.rows = body.is_object() ? '[' + call.body + ']' : call.body;
    payload.isEmpty = body.is_array() && body.empty();
    const auto named = call.query.find("columns");
    if (named != call.query.end()) {
        // Each once, however often it is named.
        for (const std::string &column : columnNames(named->second)) {
            if (std::find(payload.columns.begin(), payload.columns.end(), column)
                == payload.columns.end())
                payload.columns.push_back(column);
        }
    } else if (body.is_object()) {
        payload.columns = keysOf(body);
    } else if (!body.empty()) {
        payload.columns = keysOf(body.front());
    }
    if (body.is_array()) {
        for (const Json &row : body) {
            if (!row.is_object() || (named == call.query.end() && keysOf(row) != payload.columns))
                throw restError(400, "PGRST102", "All object keys must match");
        }
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

/// What was written: rows as a list, the first of them as an object, and how many there are.
struct Written {
    std::string rows = "[]";
    std::string first;
    long count = 0;
};

Reply replyAfterWriting(const Call &call, const Written &written)
{
    const Preferences preferences = preferencesOf(call);
    const bool isSingle = wantsSingleObject(call);
    if (isSingle)
        requireSingle(written.count);
    Reply reply;
    reply.status = call.verb == "POST" ? 201 : preferences.showsRows ? 200 : 204;
    reply.contentType = rowsType(isSingle);
    if (preferences.showsRows)
        reply.body = isSingle ? written.first : written.rows;
    std::optional<long> total;
    if (preferences.count)
        total = written.count;
    // Rows that are new or gone have no place in a list.
    reply.headers.emplace_back("Content-Range",
                               contentRange(0, call.verb == "PATCH" ? written.count : 0, total));
    if (!preferences.applied().empty())
        reply.headers.emplace_back("Preference-Applied", preferences.applied());
    return reply;
}

/// Runs a writing statement up to its RETURNING, and tells what was written.
Reply write(const Rest &rest, const Call &call, const Caller &caller, const std::string &table,
            const Statement &statement)
{
    const auto select = call.query.find("select");
    const std::string shown = select == call.query.end() ? "*" : select->second;
    const std::string text = "with written as (" + statement.text + " returning "
        + (preferencesOf(call).showsRows ? columnsFrom(shown, quotedIdentifier(table)) : "1")
        + ") select coalesce(json_agg(written), '[]')::text, json_agg(written)->0, count(*) "
          "from written";

    const auto session = rest.sessions.take();
    Transaction transaction(*session);
    actAs(*session, caller);
    const Rows rows = session->run(text, statement.values);
    // Before the end of the transaction: what may not be told is not written either.
    const Reply reply =
        replyAfterWriting(call, {rows.text(0, 0), rows.text(0, 1), std::stol(rows.text(0, 2))});
    transaction.commit();
    return reply;
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
        return replyAfterWriting(call, {});
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
        return replyAfterWriting(call, {});
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
