// The part of the accounts' interface that goes by mail.
#include "service/AuthRequest.h"
#include "service/Authentication.h"
#include "service/Cors.h"
#include "service/SessionReply.h"

#include <cctype>
#include <cstdio>
#include <optional>
#include <string>

namespace {

const AuthError linkIsOver{403, "otp_expired", "Email link is invalid or has expired"};

std::string escaped(const std::string &text)
{
    std::string address;
    for (const char letter : text) {
        char code[4];
        std::snprintf(code, sizeof code, "%%%02X", static_cast<unsigned char>(letter));
        const bool isPlain = std::isalnum(static_cast<unsigned char>(letter)) != 0 || letter == '-'
            || letter == '.' || letter == '_' || letter == '~';
        address += isPlain ? std::string(1, letter) : code;
    }
    return address;
}

/// The page that a mail's link leads to in the end: one of this machine, or none.
std::string destinationOf(const Call &call)
{
    const auto found = call.query.find("redirect_to");
    if (found == call.query.end())
        return {};
    const std::string &address = found->second;
    const auto scheme = address.find("://");
    const std::string origin = scheme == std::string::npos
        ? ""
        : address.substr(0, address.find_first_of("/?#", scheme + 3));
    const bool isHeaderText = address.find_first_of("\r\n \"<>\\") == std::string::npos;
    return isHeaderText && isOfThisMachine(origin) ? address : std::string();
}

Reply redirection(const std::string &address, const std::string &fragment)
{
    Reply reply;
    reply.status = 303;
    reply.headers.emplace_back("Location", address.substr(0, address.find('#')) + '#' + fragment);
    return reply;
}

std::string fragmentOf(const Reply &session, const std::string &type)
{
    const auto json = nlohmann::json::parse(session.body);
    return "access_token=" + escaped(json.at("access_token")) + "&expires_at="
        + json.at("expires_at").dump() + "&expires_in=" + json.at("expires_in").dump()
        + "&refresh_token=" + escaped(json.at("refresh_token"))
        + "&token_type=bearer&type=" + escaped(type);
}

MailKind kindOf(const std::string &type)
{
    if (type == "signup" || type == "email")
        return MailKind::SignUp;
    if (type == "email_change")
        return MailKind::EmailChange;
    if (type == "recovery")
        return MailKind::Recovery;
    throw AuthError{400, "validation_failed", "Invalid email verification type"};
}

Reply plainText(const std::string &text)
{
    Reply reply;
    reply.body = text + '\n';
    reply.contentType = "text/plain; charset=utf-8";
    return reply;
}

} // namespace

Reply Authentication::recover(const Call &call)
{
    const auto account = m_accounts.find(emailFrom(call));
    if (account) {
        requirePause(account->id, MailKind::Recovery);
        sendMail(call, *account, MailKind::Recovery);
    }
    return jsonReply("{}");
}

Reply Authentication::resend(const Call &call)
{
    const Resending wanted = resendingFrom(call);
    const MailKind kind = kindOf(wanted.type);
    const auto account = m_accounts.find(wanted.email);
    const auto newEmail = account ? m_accounts.awaitedEmail(account->id) : std::nullopt;
    const bool isAwaited =
        account && (kind == MailKind::SignUp ? !account->isConfirmed : newEmail.has_value());
    if (isAwaited) {
        requirePause(account->id, kind);
        sendMail(call, *account, kind, kind == MailKind::EmailChange ? *newEmail : "");
    }
    return jsonReply("{}");
}

Reply Authentication::verify(const Call &call)
{
    const MailToken given = mailTokenFrom(call);
    const auto account = m_accounts.accept(kindOf(given.type), given.token);
    if (!account)
        throw linkIsOver;
    return begin(call, account->id);
}

Reply Authentication::verifyFromMail(const Call &call)
{
    const std::string page = destinationOf(call);
    try {
        const MailToken given = mailTokenFrom(call);
        // Without a page that could take the session over, the link is kept for one that can.
        if (page.empty() && kindOf(given.type) == MailKind::Recovery) {
            return plainText(
                "Ce lien s’ouvre depuis une page qui permet de choisir un nouveau mot de "
                "passe.");
        }
        const auto account = m_accounts.accept(kindOf(given.type), given.token);
        if (!account)
            throw linkIsOver;
        if (page.empty())
            return plainText("Votre adresse est confirmée. Vous pouvez vous connecter.");
        return redirection(page, fragmentOf(begin(call, account->id), given.type));
    } catch (const AuthError &error) {
        if (page.empty())
            throw;
        return redirection(page,
                           "error=access_denied&error_code=" + escaped(error.code)
                               + "&error_description=" + escaped(error.message));
    }
}

void Authentication::requirePause(const std::string &accountId, MailKind kind)
{
    const int seconds = m_accounts.secondsUntilMail(accountId, kind, m_options.mailPause);
    if (seconds > 0) {
        throw AuthError{429, "over_email_send_rate_limit",
                        "For security purposes, you can only request this after "
                            + std::to_string(seconds) + " seconds."};
    }
}

void Authentication::sendMail(const Call &call, const Account &account, MailKind kind,
                              const std::string &newEmail)
{
    const std::string token = randomText(28);
    m_accounts.expectAnswer(account.id, kind, token, newEmail);
    const std::string page = destinationOf(call);
    const auto link = [&](const char *type) {
        return "http://" + call.header("host") + "/auth/v1/verify?type=" + type + "&token=" + token
            + (page.empty() ? "" : "&redirect_to=" + escaped(page));
    };
    const std::string email =
        newEmail.empty() ? nlohmann::json::parse(account.json).value("email", "") : newEmail;
    switch (kind) {
    case MailKind::SignUp:
        return m_outbox.send(email, "Confirmez votre adresse",
                             "Pour confirmer votre adresse, ouvrez :\n" + link("signup"));
    case MailKind::EmailChange:
        return m_outbox.send(email, "Confirmez votre nouvelle adresse",
                             "Pour confirmer votre nouvelle adresse, ouvrez :\n"
                                 + link("email_change"));
    case MailKind::Recovery:
        return m_outbox.send(email, "Choisissez un nouveau mot de passe",
                             "Pour choisir un nouveau mot de passe, ouvrez :\n" + link("recovery"));
    }
}
