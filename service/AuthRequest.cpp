#include "service/AuthRequest.h"

#include "service/EmailRule.h"
#include "service/Json.h"

#include <cstddef>
#include <ctime>
#include <string>
#include <variant>

namespace {

using Json = nlohmann::json;

// In bytes, as the hosted service counts them: an "é" has two. bcrypt looks at no more than 72.
constexpr std::size_t shortestPassword = 6;
constexpr std::size_t longestPassword = 72;
constexpr std::size_t longestEmail = 255;

Json bodyOf(const Call &call)
{
    Json body = parsedJson(call.body);
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

Json objectIn(const Json &body, const char *key)
{
    const Json value = body.value(key, Json());
    if (!value.is_object() && !value.is_null())
        throw AuthError{400, "bad_json", "Could not parse request body as JSON"};
    return value.is_null() ? Json::object() : value;
}

void requireEmail(const std::string &text)
{
    if (text.empty())
        throw AuthError{400, "validation_failed", "An email address is required"};
    if (text.size() > longestEmail)
        throw AuthError{400, "validation_failed", "An email address is too long"};
    if (!isEmail(text)) {
        throw AuthError{400, "validation_failed",
                        "Unable to validate email address: invalid format"};
    }
}

void requireGoodPassword(const std::string &text)
{
    if (text.size() > longestPassword)
        throw AuthError{400, "validation_failed", "Password cannot be longer than 72 characters"};
    if (text.size() < shortestPassword)
        throw AuthError{422, "weak_password", "Password should be at least 6 characters."};
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

NewAccount newAccountFrom(const Call &call)
{
    const Json body = bodyOf(call);
    NewAccount given{textIn(body, "email"), textIn(body, "password"), objectIn(body, "data")};
    const std::string phone = textIn(body, "phone");
    if (given.email.empty() && phone.empty())
        throw AuthError{422, "anonymous_provider_disabled", "Anonymous sign-ins are disabled"};
    if (given.password.empty())
        throw AuthError{400, "validation_failed", "Signup requires a valid password"};
    requireGoodPassword(given.password);
    if (!given.email.empty() && !phone.empty()) {
        throw AuthError{400, "validation_failed",
                        "Only an email address or phone number should be provided on signup."};
    }
    if (given.email.empty())
        throw AuthError{400, "phone_provider_disabled", "Phone signups are disabled"};
    requireEmail(given.email);
    return given;
}

AccountChange accountChangeFrom(const Call &call)
{
    const Json body = bodyOf(call);
    AccountChange change;
    if (const std::string email = textIn(body, "email"); !email.empty()) {
        requireEmail(email);
        change.email = email;
    }
    if (body.contains("password") && !body.at("password").is_null()) {
        change.password = textIn(body, "password");
        requireGoodPassword(*change.password);
    }
    if (body.contains("data") && !body.at("data").is_null())
        change.data = objectIn(body, "data");
    return change;
}

std::string emailFrom(const Call &call)
{
    const std::string email = textIn(bodyOf(call), "email");
    requireEmail(email);
    return email;
}

Resending resendingFrom(const Call &call)
{
    const Json body = bodyOf(call);
    Resending wanted{textIn(body, "type"), textIn(body, "email")};
    const bool isPhone = wanted.type == "sms" || wanted.type == "phone_change";
    if (!isPhone && wanted.type != "signup" && wanted.type != "email_change") {
        throw AuthError{400, "validation_failed",
                        "Missing one of these types: signup, email_change, sms, phone_change"};
    }
    if (isPhone)
        throw AuthError{400, "validation_failed", "Type provided requires a phone number"};
    if (wanted.email.empty())
        throw AuthError{400, "validation_failed", "Type provided requires an email address"};
    requireEmail(wanted.email);
    return wanted;
}

MailToken mailTokenFrom(const Call &call)
{
    const auto inQuery = [&](const char *name) {
        const auto found = call.query.find(name);
        return found == call.query.end() ? std::string() : found->second;
    };
    MailToken given{inQuery("type"), inQuery("token")};
    if (call.verb == "POST") {
        const Json body = bodyOf(call);
        given = {textIn(body, "type"), textIn(body, "token_hash")};
        // The six digits that a hosted project's mail can hold are not sent by this service.
        if (given.token.empty() && !textIn(body, "token").empty())
            throw AuthError{403, "otp_expired", "Token has expired or is invalid"};
    }
    if (given.type.empty())
        throw AuthError{400, "validation_failed", "Verify requires a verification type"};
    if (given.token.empty())
        throw AuthError{400, "validation_failed", "Verify requires a token or a token hash"};
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
    const auto token = bearerOf(call);
    // The project's key in the place of a token is one that names nobody.
    if (!token && !call.header("authorization").empty())
        throw AuthError{403, "bad_jwt", "invalid claim: missing sub claim"};
    if (!token || token->empty())
        throw AuthError{401, "no_authorization", "This endpoint requires a valid Bearer token"};
    const auto result = claimsOf(*token, keys.tokenSecret, static_cast<long>(std::time(nullptr)));
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
    const Json claims = parsedJson(std::get<std::string>(result));
    const std::string subject = textIn(claims, "sub");
    if (subject.empty())
        throw AuthError{403, "bad_jwt", "invalid claim: missing sub claim"};
    return {subject, textIn(claims, "session_id")};
}
