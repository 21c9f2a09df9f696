#include "service/SessionReply.h"

#include "service/Tokens.h"

#include <ctime>
#include <nlohmann/json.hpp>
#include <string>

Reply jsonReply(const std::string &body)
{
    Reply reply;
    reply.body = body;
    reply.contentType = "application/json";
    return reply;
}

Reply sessionReply(const Account &account, const RefreshGrant &grant, const std::string &issuer,
                   int tokenSeconds, const std::string &secret)
{
    using Json = nlohmann::ordered_json;
    const Json shown = Json::parse(account.json);
    const long now = static_cast<long>(std::time(nullptr));
    const long expiry = now + tokenSeconds;
    const Json claims{{"iss", issuer},
                      {"sub", account.id},
                      {"aud", shown["aud"]},
                      {"exp", expiry},
                      {"iat", now},
                      {"email", shown.value("email", "")},
                      {"phone", ""},
                      {"app_metadata", shown["app_metadata"]},
                      {"user_metadata", shown["user_metadata"]},
                      {"role", "authenticated"},
                      {"aal", "aal1"},
                      {"amr", Json::array({{{"method", "password"}, {"timestamp", now}}})},
                      {"session_id", grant.session},
                      {"is_anonymous", false}};
    const Json reply{{"access_token", signedToken(claims.dump(), secret)},
                     {"token_type", "bearer"},
                     {"expires_in", tokenSeconds},
                     {"expires_at", expiry},
                     {"refresh_token", grant.token},
                     {"user", shown}};
    return jsonReply(reply.dump());
}
