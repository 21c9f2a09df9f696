#include "service/Gateway.h"

#include "service/Json.h"
#include "service/Tokens.h"

#include <algorithm>
#include <ctime>
#include <string>
#include <string_view>
#include <strings.h>
#include <variant>

namespace {

Reply tokenRefused(const std::string &code, const std::string &message,
                   const std::optional<std::string> &details = std::nullopt)
{
    Reply reply = restError(401, code, message, details);
    reply.headers.emplace_back(
        "WWW-Authenticate", "Bearer error=\"invalid_token\", error_description=\"" + message + '"');
    return reply;
}

std::string projectKeyOf(const Call &call)
{
    const std::string key = call.header("apikey");
    const auto inQuery = call.query.find("apikey");
    return key.empty() && inQuery != call.query.end() ? inQuery->second : key;
}

/// With a key alone: whoever holds the secret one is the project's own server.
Caller ownerOf(const std::string &key, const Keys &keys)
{
    return key == keys.secret ? Caller{"service_role", R"({"role":"service_role"})"}
                              : Caller{"anon", R"({"role":"anon"})"};
}

} // namespace

void requireProjectKey(const Call &call, const Keys &keys)
{
    const std::string key = projectKeyOf(call);
    if (key.empty()) {
        throw gatewayError(401, "No API key found in request",
                           "No `apikey` request header or url param was found.");
    }
    if (key == keys.secret && call.header("user-agent").starts_with("Mozilla/")) {
        throw gatewayError(401, "Forbidden use of secret API key in browser",
                           "A secret key passes every rule. Use the publishable key here.");
    }
    if (key == keys.publishable || key == keys.secret)
        return;
    if (key.starts_with("sb_")) {
        throw gatewayError(401, "Unregistered API key",
                           "This project does not know the key of the request.");
    }
    throw gatewayError(401, "Invalid API key",
                       "Double check your Supabase `anon` or `service_role` API key.");
}

std::optional<std::string> bearerOf(const Call &call)
{
    constexpr std::string_view scheme = "Bearer";
    const std::string header = call.header("authorization");
    if (strncasecmp(header.c_str(), scheme.data(), scheme.size()) != 0
        || (header.size() > scheme.size() && header[scheme.size()] != ' ')) {
        return std::nullopt;
    }
    const auto start = header.find_first_not_of(' ', scheme.size());
    const std::string token = start == std::string::npos ? "" : header.substr(start);
    const std::string key = projectKeyOf(call);
    return !key.empty() && token == key ? std::nullopt : std::optional(token);
}

Caller callerOf(const Call &call, const Keys &keys)
{
    const auto token = bearerOf(call);
    if (!token)
        return ownerOf(projectKeyOf(call), keys);
    if (token->empty())
        throw tokenRefused("PGRST301", "Empty JWT is sent in Authorization header");
    const auto result = claimsOf(*token, keys.tokenSecret, static_cast<long>(std::time(nullptr)));
    if (const auto *fault = std::get_if<TokenFault>(&result)) {
        switch (*fault) {
        case TokenFault::Malformed:
            throw tokenRefused(
                "PGRST301",
                "Expected 3 parts in JWT; got "
                    + std::to_string(1 + std::count(token->begin(), token->end(), '.')));
        case TokenFault::WrongSignature:
            throw tokenRefused("PGRST301", "No suitable key or wrong key type",
                               "None of the keys was able to decode the JWT");
        case TokenFault::Expired:
            throw tokenRefused("PGRST303", "JWT expired");
        }
    }
    const auto &claims = std::get<std::string>(result);
    const auto role = parsedJson(claims).value("role", nlohmann::json());
    // Only these may be taken on; a signed token with another role is not one of ours.
    for (const char *known : {"anon", "authenticated", "service_role"}) {
        if (role == known)
            return {known, claims};
    }
    return {"anon", claims};
}
