// The part of the accounts that goes by mail.
#include "service/Accounts.h"

#include <optional>
#include <string>

namespace {

/// Where an account keeps the hash of the token that was sent to it, and the time of sending.
struct Columns {
    std::string token;
    std::string sentAt;
};

Columns columnsOf(MailKind kind)
{
    switch (kind) {
    case MailKind::SignUp:
        return {"confirmation_token", "confirmation_sent_at"};
    case MailKind::EmailChange:
        return {"email_change_token_new", "email_change_sent_at"};
    case MailKind::Recovery:
        return {"recovery_token", "recovery_sent_at"};
    }
    return {};
}

} // namespace

int Accounts::secondsUntilMail(const std::string &accountId, MailKind kind, int pause)
{
    // Without an earlier mail the greatest is 0, whatever it is compared with.
    const Rows rows =
        m_sessions.take()->run("select greatest(ceil(extract(epoch from " + columnsOf(kind).sentAt
                                   + " - now()) + $2::int), 0)::int from auth.users where id = $1",
                               {accountId, std::to_string(pause)});
    return rows.count() == 0 ? 0 : std::stoi(rows.text(0, 0));
}

void Accounts::expectAnswer(const std::string &accountId, MailKind kind, const std::string &token,
                            const std::string &newEmail)
{
    const Columns columns = columnsOf(kind);
    m_sessions.take()->run("update auth.users set " + columns.token
                               + " = encode(local_service.token_hash($2), 'hex'), " + columns.sentAt
                               + " = now(), updated_at = now(), email_change = case when $3 = '' "
                                 "then email_change else lower($3) end where id = $1",
                           {accountId, token, newEmail});
}

std::optional<std::string> Accounts::awaitedEmail(const std::string &accountId)
{
    const Rows rows = m_sessions.take()->run(
        "select email_change from auth.users where id = $1 and email_change <> ''", {accountId});
    return rows.count() == 0 ? std::nullopt : std::optional(rows.text(0, 0));
}

std::optional<Account> Accounts::accept(MailKind kind, const std::string &token)
{
    const Columns columns = columnsOf(kind);
    std::string id;
    {
        const auto connection = m_sessions.take();
        Transaction transaction(*connection);
        const Rows found = connection->run(
            "update auth.users set " + columns.token + " = '' where " + columns.token
                + " = encode(local_service.token_hash($1), 'hex') and " + columns.sentAt
                + " > now() - interval '1 hour' returning id",
            {token});
        if (found.count() == 0)
            return std::nullopt;
        id = found.text(0, 0);
        connection->run(kind == MailKind::EmailChange ? "select local_service.change_email($1)"
                                                      : "select local_service.confirm($1)",
                        {id});
        transaction.commit();
    }
    // Who holds a session while waiting for another one may wait for ever.
    return findById(id);
}
