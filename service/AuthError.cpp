#include "service/AuthError.h"

#include <nlohmann/json.hpp>

Reply replyFor(const AuthError &error, AuthErrorShape shape)
{
    nlohmann::ordered_json json;
    if (shape == AuthErrorShape::Current) {
        json = {{"code", error.status}, {"error_code", error.code}, {"msg", error.message}};
    } else if (error.isGrant) {
        json = {{"error", "invalid_grant"}, {"error_description", error.message}};
    } else {
        json = {{"code", error.status}, {"msg", error.message}};
    }
    if (error.code == "weak_password")
        json["weak_password"] = {{"reasons", {"length"}}};
    Reply reply;
    reply.status = error.status;
    reply.body = json.dump();
    reply.contentType = "application/json";
    return reply;
}
