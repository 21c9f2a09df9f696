#include "service/Cors.h"

#include <algorithm>
#include <cctype>
#include <string>
#include <string_view>

bool isOfThisMachine(const std::string &origin)
{
    for (const std::string_view scheme : {"http://", "https://"}) {
        for (const std::string_view host : {"localhost", "127.0.0.1", "[::1]"}) {
            const std::string start = std::string(scheme) + std::string(host);
            if (!origin.starts_with(start))
                continue;
            const std::string port = origin.substr(start.size());
            const bool isNumber = port.size() > 1 && port.front() == ':'
                && std::all_of(port.begin() + 1, port.end(),
                               [](unsigned char digit) { return std::isdigit(digit) != 0; });
            if (port.empty() || isNumber)
                return true;
        }
    }
    return false;
}

std::optional<Reply> preflightReply(const Call &call)
{
    if (call.verb != "OPTIONS" || call.header("origin").empty()
        || call.header("access-control-request-method").empty()) {
        return std::nullopt;
    }
    Reply reply;
    if (isOfThisMachine(call.header("origin"))) {
        reply.headers.emplace_back("Access-Control-Allow-Methods",
                                   "GET,HEAD,POST,PUT,PATCH,DELETE,OPTIONS");
        if (const auto wanted = call.header("access-control-request-headers"); !wanted.empty())
            reply.headers.emplace_back("Access-Control-Allow-Headers", wanted);
        reply.headers.emplace_back("Access-Control-Max-Age", "3600");
    }
    return reply;
}

void allowReading(const Call &call, Reply &reply)
{
    const std::string origin = call.header("origin");
    if (origin.empty())
        return;
    reply.headers.emplace_back("Vary", "Origin");
    if (!isOfThisMachine(origin))
        return;
    reply.headers.emplace_back("Access-Control-Allow-Origin", origin);
    reply.headers.emplace_back("Access-Control-Expose-Headers",
                               "Content-Encoding, Content-Range, Location, Preference-Applied, "
                               "X-Supabase-Api-Version, X-Sb-Error-Code");
}
