#include "service/Authentication.h"

#include "service/AuthRequest.h"
#include "service/SessionReply.h"

using Json = nlohmann::ordered_json;

namespace {

std::string parameter(const Call &call, const std::string &name)
{
    const auto found = call.query.find(name);
    return found == call.query.end() ? std::string() : found->second;
}

std::string origin(const Call &call)
{
    return "http://" + call.header("host");
}

} // namespace

Authentication::Authentication(const Options &options, const Keys &keys, ConnectionPool &sessions,
                               Outbox outbox)
    : m_options(options)
    , m_keys(keys)
    , m_accounts(sessions)
    , m_outbox(std::move(outbox))
    , m_tries(options.rateLimit)
{
}

Reply Authentication::answer(const std::string &operation, const Call &call)
{
    const auto is = [&](const char *verb, const char *name) {
        return call.verb == verb && operation == name;
    };
    try {
        if (is("POST", "signup"))
            return signUp(call);
        if (is("POST", "token")) {
            const std::string grant = parameter(call, "grant_type");
            if (grant == "password")
                return signIn(call);
            if (grant == "refresh_token")
                return refreshSession(call);
            throw AuthError{400, "validation_failed", "unsupported_grant_type", true};
        }
        if (is("GET", "user"))
            return showAccount(call);
        if (is("POST", "logout"))
            return signOut(call);
        if (is("GET", "verify"))
            return confirm(call);
    } catch (const AuthError &error) {
        return replyFor(error, m_options.authErrors);
    } catch (const DatabaseError &error) {
        return replyFor({500, "unexpected_failure", std::string("Database error: ") + error.what()},
                        m_options.authErrors);
    }
    Reply reply = jsonReply("404 page not found\n");
    reply.status = 404;
    reply.contentType = "text/plain; charset=utf-8";
    return reply;
}

Reply Authentication::signUp(const Call &call)
{
    requireNotTooOften(call);
    const Credentials given = newCredentialsFrom(call);
    const auto token =
        m_options.confirmEmail ? std::optional<std::string>(randomText(28)) : std::nullopt;
    const auto added = m_accounts.add(given.email, given.password, token);
    if (!m_options.confirmEmail) {
        if (!added)
            throw AuthError{422, "user_already_exists", "User already registered"};
        const RefreshGrant grant = m_accounts.beginSession(added->id);
        return begun(call, m_accounts.findById(added->id).value(), grant);
    }
    if (added) {
        sendConfirmation(call, given.email, *token);
        return jsonReply(added->json);
    }
    // Nobody learns in this way who has an account: the reply is one of a new account.
    Json account = Json::parse(m_accounts.find(given.email).value().json);
    const std::string digits = randomText(16);
    account["id"] = digits.substr(0, 8) + '-' + digits.substr(8, 4) + "-4" + digits.substr(13, 3)
        + "-a" + digits.substr(17, 3) + '-' + digits.substr(20);
    account["identities"] = Json::array();
    account.erase("email_confirmed_at");
    account.erase("confirmed_at");
    account.erase("last_sign_in_at");
    return jsonReply(account.dump());
}

Reply Authentication::signIn(const Call &call)
{
    requireNotTooOften(call);
    const Credentials given = credentialsFrom(call);
    const auto account = m_accounts.matching(given.email, given.password);
    if (!account)
        throw AuthError{400, "invalid_credentials", "Invalid login credentials", true};
    if (!account->isConfirmed)
        throw AuthError{400, "email_not_confirmed", "Email not confirmed", true};
    const RefreshGrant grant = m_accounts.beginSession(account->id);
    return begun(call, m_accounts.findById(account->id).value(), grant);
}

Reply Authentication::refreshSession(const Call &call)
{
    const std::string token = refreshTokenFrom(call);
    Accounts::RefreshFault fault{};
    const auto refreshed = m_accounts.refresh(token, &fault);
    if (!refreshed) {
        switch (fault) {
        case Accounts::RefreshFault::Unknown:
            throw AuthError{400, "refresh_token_not_found",
                            "Invalid Refresh Token: Refresh Token Not Found", true};
        case Accounts::RefreshFault::AlreadyUsed:
            throw AuthError{400, "refresh_token_already_used",
                            "Invalid Refresh Token: Already Used", true};
        }
    }
    return begun(call, refreshed->account, refreshed->grant);
}

Reply Authentication::showAccount(const Call &call)
{
    const Bearer bearer = bearerFrom(call, m_keys);
    const auto account = m_accounts.findById(bearer.subject);
    if (!account)
        throw AuthError{403, "user_not_found", "User from sub claim in JWT does not exist"};
    if (!m_accounts.hasSession(bearer.session)) {
        throw AuthError{403, "session_not_found",
                        "Session from session_id claim in JWT does not exist"};
    }
    return jsonReply(account->json);
}

Reply Authentication::signOut(const Call &call)
{
    const Bearer bearer = bearerFrom(call, m_keys);
    const std::string scope = parameter(call, "scope");
    m_accounts.endSessions(bearer.subject, bearer.session,
                           scope == "local"        ? Accounts::Scope::Local
                               : scope == "others" ? Accounts::Scope::Others
                                                   : Accounts::Scope::Global);
    Reply reply;
    reply.status = 204;
    return reply;
}

Reply Authentication::confirm(const Call &call)
{
    if (!m_accounts.confirm(parameter(call, "token")))
        throw AuthError{403, "otp_expired", "Email link is invalid or has expired"};
    Reply reply = jsonReply("Votre adresse est confirmée. Vous pouvez vous connecter.\n");
    reply.contentType = "text/plain; charset=utf-8";
    return reply;
}

void Authentication::requireNotTooOften(const Call &call)
{
    if (!m_tries.allows(call.peer))
        throw AuthError{429, "over_request_rate_limit", "Request rate limit reached"};
}

void Authentication::sendConfirmation(const Call &call, const std::string &email,
                                      const std::string &token)
{
    m_outbox.send(email, "Confirmez votre adresse",
                  "Pour confirmer votre adresse, ouvrez :\n" + origin(call)
                      + "/auth/v1/verify?type=signup&token=" + token);
}

Reply Authentication::begun(const Call &call, const Account &account,
                            const RefreshGrant &grant) const
{
    return sessionReply(account, grant, origin(call) + "/auth/v1", m_options.tokenSeconds,
                        m_keys.secret);
}
