#include "service/Reply.h"

#include "service/Database.h"

#include <charconv>
#include <nlohmann/json.hpp>

namespace {

std::string written(const nlohmann::json &json)
{
    // What clients send comes back in messages, valid UTF-8 or not.
    return json.dump(-1, ' ', false, nlohmann::json::error_handler_t::replace);
}

nlohmann::json orNull(const std::optional<std::string> &text)
{
    return text ? nlohmann::json(*text) : nlohmann::json(nullptr);
}

int statusFor(const std::string &state, const std::string &message, bool isSignedIn)
{
    const auto isOfClass = [&](const char *prefix) { return state.starts_with(prefix); };
    if (state == "42501")
        return isSignedIn ? 403 : 401;
    if (state == "23503" || state == "23505")
        return 409;
    if (state == "42883" || state == "42P01")
        return 404;
    if (state == "25006")
        return 405;
    if (state == "21000")
        return message.ends_with("requires a WHERE clause") ? 400 : 500;
    // A function of the database chooses the status by such a code.
    int chosen = 0;
    if (isOfClass("PT")
        && std::from_chars(state.data() + 2, state.data() + state.size(), chosen).ptr
            == state.data() + state.size()
        && chosen >= 200 && chosen < 600) {
        return chosen;
    }
    if (isOfClass("08") || (isOfClass("53") && state != "53400"))
        return 503;
    if (isOfClass("0L") || isOfClass("0P") || isOfClass("28"))
        return 403;
    // What a function says in words of its own is for the client; its other faults are the
    // server's.
    if (isOfClass("P0"))
        return state == "P0001" ? 400 : 500;
    for (const char *prefix : {"09", "25", "2D", "38", "39", "3B", "40", "53", "54", "55", "57",
                               "58", "F0", "HV", "XX", "42P17"}) {
        if (isOfClass(prefix))
            return 500;
    }
    return 400;
}

} // namespace

std::string Call::header(const std::string &name) const
{
    const auto found = headers.find(name);
    return found == headers.end() ? std::string() : found->second;
}

Reply restError(int status, const std::string &code, const std::string &message,
                const std::optional<std::string> &details, const std::optional<std::string> &hint)
{
    Reply reply;
    reply.status = status;
    reply.body = written({{"code", code},
                          {"details", orNull(details)},
                          {"hint", orNull(hint)},
                          {"message", message}});
    return reply;
}

Reply restError(const DatabaseError &error, bool isSignedIn)
{
    Reply reply = restError(statusFor(error.sqlState, error.what(), isSignedIn), error.sqlState,
                            error.what(), error.details, error.advice);
    if (error.sqlState == "08006") {
        reply = restError(503, "PGRST000", "Database connection error. Retrying the connection.",
                          error.what());
    }
    if (reply.status == 401)
        reply.headers.emplace_back("WWW-Authenticate", "Bearer");
    return reply;
}

Reply notOffered(const std::string &what)
{
    return restError(501, "LOCAL", "The local service does not offer this: " + what);
}

Reply gatewayError(int status, const std::string &message, const std::optional<std::string> &hint)
{
    nlohmann::ordered_json json{{"message", message}};
    if (hint)
        json["hint"] = *hint;
    Reply reply;
    reply.status = status;
    reply.body = json.dump();
    return reply;
}
