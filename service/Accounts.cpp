#include "service/Accounts.h"

#include "service/Keys.h"

namespace {

constexpr char accountColumns[] =
    "u.id, local_service.account(u), u.email_confirmed_at is not null";

Account accountFrom(const Rows &rows)
{
    return {rows.text(0, 0), rows.text(0, 1), rows.text(0, 2) == "t"};
}

std::optional<Account> firstOf(const Rows &rows)
{
    return rows.count() == 0 ? std::nullopt : std::optional(accountFrom(rows));
}

std::string issueToken(Connection &connection, const std::string &accountId,
                       const std::string &session)
{
    const std::string token = randomText(16);
    connection.run("insert into auth.refresh_tokens (token_hash, session_id, user_id) "
                   "values (local_service.token_hash($1), $2, $3)",
                   {token, session, accountId});
    return token;
}

} // namespace

std::optional<Account> Accounts::find(const std::string &email)
{
    return firstOf(
        m_sessions.take()->run(std::string("select ") + accountColumns
                                   + " from auth.users u where lower(u.email) = lower($1)",
                               {email}));
}

std::optional<Account> Accounts::findById(const std::string &id)
{
    return firstOf(m_sessions.take()->run(std::string("select ") + accountColumns
                                              + " from auth.users u where u.id::text = $1",
                                          {id}));
}

std::optional<Account> Accounts::add(const std::string &email, const std::string &password,
                                     const std::string &data, bool isConfirmed)
{
    return firstOf(m_sessions.take()->run(
        std::string(
            "insert into auth.users as u (instance_id, id, aud, role, email, encrypted_password, "
            "email_confirmed_at, confirmation_token, recovery_token, email_change_token_new, "
            "email_change, raw_app_meta_data, raw_user_meta_data, created_at, updated_at) "
            "select '00000000-0000-0000-0000-000000000000', new.id, 'authenticated', "
            "'authenticated', lower($1), local_service.password_hash($2), "
            "case when $4::boolean then now() end, '', '', '', '', "
            "'{\"provider\": \"email\", \"providers\": [\"email\"]}', "
            "$3::jsonb || jsonb_build_object('sub', new.id, 'email', lower($1), "
            "'email_verified', $4::boolean, 'phone_verified', false), now(), now() "
            "from (select gen_random_uuid() as id) as new on conflict do nothing returning ")
            + accountColumns,
        {email, password, data, isConfirmed ? "true" : "false"}));
}

std::optional<Account> Accounts::matching(const std::string &email, const std::string &password)
{
    return firstOf(
        m_sessions.take()->run(std::string("select ") + accountColumns
                                   + " from auth.users u where lower(u.email) = lower($1) "
                                     "and local_service.password_fits($2, u.encrypted_password)",
                               {email, password}));
}

void Accounts::confirm(const std::string &accountId)
{
    m_sessions.take()->run("select local_service.confirm($1)", {accountId});
}

void Accounts::changePassword(const std::string &accountId, const std::string &session,
                              const std::string &password)
{
    m_sessions.take()->run("update auth.users set encrypted_password = "
                           "local_service.password_hash($2), updated_at = now() where id = $1",
                           {accountId, password});
    endSessions(accountId, session, Scope::Others);
}

void Accounts::changeData(const std::string &accountId, const std::string &data)
{
    m_sessions.take()->run(
        "update auth.users set updated_at = now(), raw_user_meta_data = "
        "(coalesce(raw_user_meta_data, '{}') || $2::jsonb) "
        "- array(select key from jsonb_each($2::jsonb) where value = 'null') where id = $1",
        {accountId, data});
}

RefreshGrant Accounts::beginSession(const std::string &accountId)
{
    const auto connection = m_sessions.take();
    Transaction transaction(*connection);
    connection->run("update auth.users set last_sign_in_at = now(), updated_at = now() "
                    "where id = $1",
                    {accountId});
    RefreshGrant grant;
    grant.session = connection->run("select gen_random_uuid()").text(0, 0);
    grant.token = issueToken(*connection, accountId, grant.session);
    transaction.commit();
    return grant;
}

std::optional<Accounts::Refreshed> Accounts::refresh(const std::string &token, RefreshFault *fault)
{
    const auto connection = m_sessions.take();
    Transaction transaction(*connection);
    const Rows known =
        connection->run("select session_id, user_id, revoked from auth.refresh_tokens "
                        "where token_hash = local_service.token_hash($1) for update",
                        {token});
    if (known.count() == 0) {
        *fault = RefreshFault::Unknown;
        return std::nullopt;
    }
    const std::string session = known.text(0, 0);
    const std::string accountId = known.text(0, 1);
    if (known.text(0, 2) == "t") {
        connection->run("delete from auth.refresh_tokens where session_id = $1", {session});
        transaction.commit();
        *fault = RefreshFault::AlreadyUsed;
        return std::nullopt;
    }
    connection->run("update auth.refresh_tokens set revoked = true "
                    "where token_hash = local_service.token_hash($1)",
                    {token});
    const Account account = accountFrom(connection->run(std::string("select ") + accountColumns
                                                            + " from auth.users u where u.id = $1",
                                                        {accountId}));
    const std::string next = issueToken(*connection, accountId, session);
    transaction.commit();
    return Refreshed{account, {next, session}};
}

bool Accounts::hasSession(const std::string &session)
{
    return m_sessions.take()
               ->run("select from auth.refresh_tokens where session_id::text = $1 limit 1",
                     {session})
               .count()
        > 0;
}

void Accounts::endSessions(const std::string &accountId, const std::string &session, Scope scope)
{
    const char *which = "";
    switch (scope) {
    case Scope::Global:
        which = "$2::text is not null";
        break;
    case Scope::Local:
        which = "session_id::text = $2";
        break;
    case Scope::Others:
        which = "session_id::text <> $2";
        break;
    }
    m_sessions.take()->run(
        std::string("delete from auth.refresh_tokens where user_id::text = $1 and ") + which,
        {accountId, session});
}
