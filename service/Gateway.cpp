#include "service/Gateway.h"

#include "service/Tokens.h"

#include <algorithm>
#include <ctime>
#include <nlohmann/json.hpp>
#include <strings.h>

namespace {

Reply tokenRefused(const std::string &message)
{
    Reply reply = restError(401, "PGRST301", message);
    reply.headers.emplace_back(
        "WWW-Authenticate", "Bearer error=\"invalid_token\", error_description=\"" + message + '"');
    return reply;
}

} // namespace

void requireProjectKey(const Call &call, const Keys &keys)
{
    std::string key = call.header("apikey");
    if (const auto inQuery = call.query.find("apikey");
        key.empty() && inQuery != call.query.end()) {
        key = inQuery->second;
    }
    if (key.empty()) {
        throw gatewayError(401, "No API key found in request",
                           "No `apikey` request header or url param was found.");
    }
    if (key != keys.anonKey && key != keys.serviceRoleKey) {
        throw gatewayError(401, "Invalid API key",
                           "Double check your Supabase `anon` or `service_role` API key.");
    }
}

std::string bearerOf(const Call &call)
{
    constexpr std::string_view scheme = "Bearer ";
    const std::string header = call.header("authorization");
    if (header.size() < scheme.size()
        || strncasecmp(header.c_str(), scheme.data(), scheme.size()) != 0) {
        return {};
    }
    const auto start = header.find_first_not_of(' ', scheme.size());
    return start == std::string::npos ? std::string() : header.substr(start);
}

Caller callerOf(const Call &call, const Keys &keys)
{
    const std::string token = bearerOf(call);
    if (token.empty())
        return {"anon", R"({"role":"anon"})"};
    const auto result = claimsOf(token, keys.secret, static_cast<long>(std::time(nullptr)));
    if (const auto *fault = std::get_if<TokenFault>(&result)) {
        switch (*fault) {
        case TokenFault::Malformed:
            throw tokenRefused("JWSError (CompactDecodeError Invalid number of parts: Expected 3 "
                               "parts; got "
                               + std::to_string(1 + std::count(token.begin(), token.end(), '.'))
                               + ')');
        case TokenFault::WrongSignature:
            throw tokenRefused("JWSError JWSInvalidSignature");
        case TokenFault::Expired:
            throw tokenRefused("JWT expired");
        }
    }
    const auto &claims = std::get<std::string>(result);
    const auto role = nlohmann::json::parse(claims, nullptr, false).value("role", nlohmann::json());
    // Only these may be taken on; a signed token with another role is not one of ours.
    for (const char *known : {"anon", "authenticated", "service_role"}) {
        if (role == known)
            return {known, claims};
    }
    return {"anon", claims};
}
