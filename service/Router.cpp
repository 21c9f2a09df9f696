#include "service/Router.h"

#include "service/Cors.h"
#include "service/Gateway.h"
#include "service/RestWriting.h"

#include <string>
#include <string_view>

namespace {

constexpr std::string_view restPath = "/rest/v1/";
constexpr std::string_view authPath = "/auth/v1/";

/// What a browser opens from a mail, and the public keys for tokens.
bool needsNoKey(const std::string &operation)
{
    return operation == "verify" || operation == ".well-known/jwks.json";
}

} // namespace

Reply Router::answer(const Call &call) const
{
    if (const auto preflight = preflightReply(call)) {
        Reply reply = *preflight;
        allowReading(call, reply);
        return reply;
    }
    Reply reply;
    try {
        reply = route(call);
    } catch (const Reply &refusal) {
        reply = refusal;
    }
    allowReading(call, reply);
    return reply;
}

Reply Router::route(const Call &call) const
{
    if (call.path.starts_with(authPath)) {
        const std::string operation = call.path.substr(authPath.size());
        if (!needsNoKey(operation))
            requireProjectKey(call, m_keys);
        return m_authentication.answer(operation, call);
    }
    if (call.path.starts_with(restPath)) {
        requireProjectKey(call, m_keys);
        return answerRest(call);
    }
    Reply reply;
    reply.status = 404;
    reply.body = R"({"error":"requested path is invalid"})";
    return reply;
}

Reply Router::answerRest(const Call &call) const
{
    const std::string table = call.path.substr(restPath.size());
    const Caller caller = callerOf(call, m_keys);
    if (table.empty())
        throw notOffered("the description of the interface");
    if (table.starts_with("rpc/"))
        throw notOffered("calling a function of the database");
    try {
        if (call.verb == "GET" || call.verb == "HEAD")
            return readRows(m_rest, call, caller, table);
        if (call.verb == "POST")
            return insertRows(m_rest, call, caller, table);
        if (call.verb == "PATCH")
            return updateRows(m_rest, call, caller, table);
        if (call.verb == "DELETE")
            return deleteRows(m_rest, call, caller, table);
        if (call.verb == "PUT")
            throw notOffered("putting a row in place of another one");
        if (call.verb == "OPTIONS") {
            requireTable(m_rest, table);
            Reply reply;
            reply.headers.emplace_back("Allow", "OPTIONS,GET,HEAD,POST,PATCH,DELETE");
            return reply;
        }
        return restError(405, "PGRST117", "Unsupported HTTP method: " + call.verb);
    } catch (const DatabaseError &error) {
        return restError(error, caller.isSignedIn());
    }
}
