#include "service/AuthRequest.h"

#include <ctime>

namespace {

using Json = nlohmann::json;

constexpr std::size_t shortestPassword = 6;
// bcrypt looks at no more bytes than these.
constexpr std::size_t longestPassword = 72;
constexpr std::size_t longestEmail = 255;

Json bodyOf(const Call &call)
{
    Json body = Json::parse(call.body, nullptr, false);
    if (!body.is_object())
        throw AuthError{400, "bad_json", "Could not parse request body as JSON"};
    return body;
}

std::string textIn(const Json &body, const char *key)
{
    const Json value = body.value(key, Json());
    if (!value.is_string() && !value.is_null())
        throw AuthError{400, "bad_json", "Could not parse request body as JSON"};
    return value.is_null() ? std::string() : value.get<std::string>();
}

std::size_t characterCount(const std::string &text)
{
    std::size_t count = 0;
    for (const char byte : text)
        count += (static_cast<unsigned char>(byte) & 0xC0U) != 0x80U ? 1 : 0;
    return count;
}

/// One "@" with something before it and a dotted name after it, and no white space or control.
bool looksLikeEmail(const std::string &text)
{
    const auto at = text.find('@');
    if (at == 0 || at == std::string::npos || text.size() > longestEmail
        || text.find('@', at + 1) != std::string::npos) {
        return false;
    }
    const auto dot = text.find('.', at + 2);
    const bool hasOddLetter = text.find_first_of(" \t\r\n\f\v<>,;\"") != std::string::npos;
    return dot != std::string::npos && dot + 1 < text.size() && !hasOddLetter;
}

} // namespace

Credentials credentialsFrom(const Call &call)
{
    const Json body = bodyOf(call);
    Credentials given{textIn(body, "email"), textIn(body, "password")};
    if (given.email.empty())
        throw AuthError{400, "validation_failed", "missing email or phone"};
    return given;
}

Credentials newCredentialsFrom(const Call &call)
{
    const Json body = bodyOf(call);
    Credentials given{textIn(body, "email"), textIn(body, "password")};
    if (given.email.empty() && given.password.empty())
        throw AuthError{422, "anonymous_provider_disabled", "Anonymous sign-ins are disabled"};
    if (given.password.empty())
        throw AuthError{400, "validation_failed", "Signup requires a valid password"};
    if (given.password.size() > longestPassword)
        throw AuthError{400, "validation_failed", "Password cannot be longer than 72 characters"};
    if (characterCount(given.password) < shortestPassword)
        throw AuthError{422, "weak_password", "Password should be at least 6 characters."};
    if (!looksLikeEmail(given.email)) {
        throw AuthError{400, "validation_failed",
                        "Unable to validate email address: invalid format"};
    }
    return given;
}

std::string refreshTokenFrom(const Call &call)
{
    const std::string token = textIn(bodyOf(call), "refresh_token");
    if (token.empty())
        throw AuthError{400, "validation_failed", "refresh_token required", true};
    return token;
}

Bearer bearerFrom(const Call &call, const Keys &keys)
{
    const std::string token = bearerOf(call);
    if (token.empty())
        throw AuthError{401, "no_authorization", "This endpoint requires a valid Bearer token"};
    const auto result = claimsOf(token, keys.secret, static_cast<long>(std::time(nullptr)));
    if (const auto *fault = std::get_if<TokenFault>(&result)) {
        std::string reason;
        switch (*fault) {
        case TokenFault::Malformed:
            reason = "token is malformed: token contains an invalid number of segments";
            break;
        case TokenFault::WrongSignature:
            reason = "token signature is invalid: signature is invalid";
            break;
        case TokenFault::Expired:
            reason = "token has invalid claims: token is expired";
            break;
        }
        throw AuthError{403, "bad_jwt",
                        "invalid JWT: unable to parse or verify signature, " + reason};
    }
    const Json claims = Json::parse(std::get<std::string>(result), nullptr, false);
    const std::string subject = textIn(claims, "sub");
    if (subject.empty())
        throw AuthError{403, "bad_jwt", "invalid claim: missing sub claim"};
    return {subject, textIn(claims, "session_id")};
}
