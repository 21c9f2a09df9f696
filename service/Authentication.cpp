#include "service/Authentication.h"

#include "service/AuthRequest.h"
#include "service/SessionReply.h"

#include <optional>
#include <string>
#include <utility>

using Json = nlohmann::ordered_json;

namespace {

std::string parameter(const Call &call, const std::string &name)
{
    const auto found = call.query.find(name);
    return found == call.query.end() ? std::string() : found->second;
}

/// What somebody gets who signs up with the address of another: a reply like one to a new account,
/// so that nobody learns in this way who has one.
Reply strangersReply(const Account &account, const nlohmann::json &data)
{
    Json shown = Json::parse(account.json);
    const std::string digits = randomText(16);
    shown["id"] = digits.substr(0, 8) + '-' + digits.substr(8, 4) + "-4" + digits.substr(13, 3)
        + "-a" + digits.substr(17, 3) + '-' + digits.substr(20);
    shown["identities"] = Json::array();
    shown["user_metadata"] = data;
    for (const char *told : {"email_confirmed_at", "confirmed_at", "last_sign_in_at", "new_email",
                             "email_change_sent_at", "recovery_sent_at"})
        shown.erase(told);
    return jsonReply(shown.dump());
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
    try {
        return route(operation, call);
    } catch (const AuthError &error) {
        return replyFor(error, m_options.authErrors, call);
    } catch (const DatabaseError &error) {
        return replyFor({500, "unexpected_failure", std::string("Database error: ") + error.what()},
                        m_options.authErrors, call);
    }
}

Reply Authentication::route(const std::string &operation, const Call &call)
{
    const auto is = [&](const char *verb, const char *name) {
        return call.verb == verb && operation == name;
    };
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
    if (is("PUT", "user"))
        return changeAccount(call);
    if (is("POST", "logout"))
        return signOut(call);
    if (is("POST", "recover"))
        return recover(call);
    if (is("POST", "resend"))
        return resend(call);
    if (is("POST", "verify"))
        return verify(call);
    if (is("GET", "verify"))
        return verifyFromMail(call);
    if (is("GET", "settings"))
        return settings();
    if (is("GET", "health")) {
        return jsonReply(R"({"version":"local","name":"GoTrue","description":"GoTrue is a user )"
                         R"(registration and authentication API"})");
    }
    // Tokens are signed with a secret here, so there is no public key to tell.
    if (is("GET", ".well-known/jwks.json"))
        return jsonReply(R"({"keys":[]})");
    Reply reply = jsonReply("404 page not found\n");
    reply.status = 404;
    reply.contentType = "text/plain; charset=utf-8";
    return reply;
}

Reply Authentication::signUp(const Call &call)
{
    requireNotTooOften(call);
    const NewAccount given = newAccountFrom(call);
    const bool isConfirmed = !m_options.confirmEmail;
    const auto added = m_accounts.add(given.email, given.password, given.data.dump(), isConfirmed);
    // Whoever signs up again changes nothing about the account: it may be another person's.
    const auto account = added ? added : m_accounts.find(given.email);
    if (!account)
        throw AuthError{500, "unexpected_failure", "Database error finding user"};
    if (isConfirmed) {
        if (!added && account->isConfirmed)
            throw AuthError{422, "user_already_exists", "User already registered"};
        m_accounts.confirm(account->id);
        return begin(call, account->id);
    }
    if (account->isConfirmed)
        return strangersReply(*account, given.data);
    if (!added)
        requirePause(account->id, MailKind::SignUp);
    sendMail(call, *account, MailKind::SignUp);
    return jsonReply(m_accounts.findById(account->id).value().json);
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
    return begin(call, account->id);
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

Authentication::Signed Authentication::signedIn(const Call &call)
{
    const Bearer bearer = bearerFrom(call, m_keys);
    const auto account = m_accounts.findById(bearer.subject);
    if (!account)
        throw AuthError{403, "user_not_found", "User from sub claim in JWT does not exist"};
    if (!m_accounts.hasSession(bearer.session)) {
        throw AuthError{403, "session_not_found",
                        "Session from session_id claim in JWT does not exist"};
    }
    return {*account, bearer.session};
}

Reply Authentication::showAccount(const Call &call)
{
    return jsonReply(signedIn(call).account.json);
}

Reply Authentication::changeAccount(const Call &call)
{
    const auto [account, session] = signedIn(call);
    const AccountChange change = accountChangeFrom(call);
    const auto shown = Json::parse(account.json);
    const std::string email = shown.value("email", "");
    const auto holder = change.email ? m_accounts.find(*change.email) : std::nullopt;
    if (holder && holder->id != account.id) {
        throw AuthError{422, "email_exists",
                        "A user with this email address has already been registered"};
    }
    if (change.password && m_accounts.matching(email, *change.password)) {
        throw AuthError{422, "same_password",
                        "New password should be different from the old password."};
    }
    const bool changesEmail = change.email && !holder;
    if (changesEmail)
        requirePause(account.id, MailKind::EmailChange);
    if (change.password)
        m_accounts.changePassword(account.id, session, *change.password);
    if (change.data)
        m_accounts.changeData(account.id, change.data->dump());
    if (changesEmail)
        sendMail(call, account, MailKind::EmailChange, *change.email);
    return jsonReply(m_accounts.findById(account.id).value().json);
}

Reply Authentication::signOut(const Call &call)
{
    const Bearer bearer = bearerFrom(call, m_keys);
    const std::string scope = parameter(call, "scope");
    if (!scope.empty() && scope != "global" && scope != "local" && scope != "others")
        throw AuthError{400, "validation_failed", "Unsupported logout scope \"" + scope + '"'};
    m_accounts.endSessions(bearer.subject, bearer.session,
                           scope == "local"        ? Accounts::Scope::Local
                               : scope == "others" ? Accounts::Scope::Others
                                                   : Accounts::Scope::Global);
    Reply reply;
    reply.status = 204;
    return reply;
}

Reply Authentication::settings() const
{
    const Json json{{"external", {{"anonymous_users", false}, {"email", true}, {"phone", false}}},
                    {"disable_signup", false},
                    {"mailer_autoconfirm", !m_options.confirmEmail},
                    {"phone_autoconfirm", false},
                    {"sms_provider", ""},
                    {"saml_enabled", false},
                    {"passkeys_enabled", false}};
    return jsonReply(json.dump());
}

void Authentication::requireNotTooOften(const Call &call)
{
    if (!m_tries.allows(call.peer))
        throw AuthError{429, "over_request_rate_limit", "Request rate limit reached"};
}

Reply Authentication::begin(const Call &call, const std::string &accountId)
{
    const RefreshGrant grant = m_accounts.beginSession(accountId);
    return begun(call, m_accounts.findById(accountId).value(), grant);
}

Reply Authentication::begun(const Call &call, const Account &account,
                            const RefreshGrant &grant) const
{
    return sessionReply(account, grant, "http://" + call.header("host") + "/auth/v1",
                        m_options.tokenSeconds, m_keys.tokenSecret);
}
