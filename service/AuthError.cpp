#include "service/AuthError.h"

#include <cctype>
#include <cstddef>
#include <nlohmann/json.hpp>
#include <string_view>

namespace {

constexpr std::string_view newestRelease = "2024-01-01";

/// Whether the header holds a day from that release on.
bool knowsNewestRelease(const std::string &day)
{
    constexpr std::string_view form = "dddd-dd-dd";
    if (day.size() != form.size())
        return false;
    for (std::size_t at = 0; at < form.size(); ++at) {
        const bool isDigit = std::isdigit(static_cast<unsigned char>(day[at])) != 0;
        if (form[at] == 'd' ? !isDigit : day[at] != form[at])
            return false;
    }
    return day >= newestRelease;
}

} // namespace

Reply replyFor(const AuthError &error, AuthErrorShape shape, const Call &call)
{
    constexpr char releaseHeader[] = "X-Supabase-Api-Version";
    const bool isNewest = shape == AuthErrorShape::Current
        && knowsNewestRelease(call.header("x-supabase-api-version"));
    nlohmann::ordered_json json;
    if (isNewest)
        json = {{"code", error.code}, {"message", error.message}};
    else if (shape == AuthErrorShape::Current)
        json = {{"code", error.status}, {"error_code", error.code}, {"msg", error.message}};
    else if (error.isGrant)
        json = {{"error", "invalid_grant"}, {"error_description", error.message}};
    else
        json = {{"code", error.status}, {"msg", error.message}};
    if (error.code == "weak_password")
        json["weak_password"] = {{"reasons", {"length"}}};
    Reply reply;
    reply.status = error.status;
    reply.body = json.dump(-1, ' ', false, nlohmann::ordered_json::error_handler_t::replace);
    reply.contentType = "application/json";
    if (shape == AuthErrorShape::Current)
        reply.headers.emplace_back("X-Sb-Error-Code", error.code);
    if (isNewest)
        reply.headers.emplace_back(releaseHeader, newestRelease);
    return reply;
}
