#pragma once

#include "service/Accounts.h"
#include "service/AuthError.h"
#include "service/Keys.h"
#include "service/Outbox.h"
#include "service/RateLimit.h"

#include <string>

/// The accounts' interface below "/auth/v1/": sign-up, sign-in, the account itself, sign-out and
/// what goes by mail. Any thread may call it.
class Authentication {
public:
    Authentication(const Options &options, const Keys &keys, ConnectionPool &sessions,
                   Outbox outbox);

    /// `operation` is what follows "/auth/v1/" in the path.
    Reply answer(const std::string &operation, const Call &call);

private:
    Reply route(const std::string &operation, const Call &call);
    Reply signUp(const Call &call);
    Reply signIn(const Call &call);
    Reply refreshSession(const Call &call);
    Reply showAccount(const Call &call);
    Reply changeAccount(const Call &call);
    Reply signOut(const Call &call);
    Reply recover(const Call &call);
    Reply resend(const Call &call);
    Reply verify(const Call &call);
    Reply verifyFromMail(const Call &call);
    Reply settings() const;

    struct Signed {
        Account account;
        std::string session;
    };
    Signed signedIn(const Call &call);
    void requireNotTooOften(const Call &call);
    void requirePause(const std::string &accountId, MailKind kind);
    /// To the address of the account, or to `newEmail` when it is to become that.
    void sendMail(const Call &call, const Account &account, MailKind kind,
                  const std::string &newEmail = {});
    Reply begin(const Call &call, const std::string &accountId);
    Reply begun(const Call &call, const Account &account, const RefreshGrant &grant) const;

    const Options &m_options;
    const Keys &m_keys;
    Accounts m_accounts;
    Outbox m_outbox;
    RateLimit m_tries;
};
