#pragma once

#include "service/Accounts.h"
#include "service/AuthError.h"
#include "service/Keys.h"
#include "service/Outbox.h"
#include "service/RateLimit.h"

/// The accounts' interface below "/auth/v1/": sign-up, sign-in, the account itself, sign-out and
/// the confirmation of an address. Any thread may call it.
class Authentication {
public:
    Authentication(const Options &options, const Keys &keys, ConnectionPool &sessions,
                   Outbox outbox);

    /// `operation` is what follows "/auth/v1/" in the path.
    Reply answer(const std::string &operation, const Call &call);

private:
    Reply signUp(const Call &call);
    Reply signIn(const Call &call);
    Reply refreshSession(const Call &call);
    Reply showAccount(const Call &call);
    Reply signOut(const Call &call);
    Reply confirm(const Call &call);

    void requireNotTooOften(const Call &call);
    void sendConfirmation(const Call &call, const std::string &email, const std::string &token);
    Reply begun(const Call &call, const Account &account, const RefreshGrant &grant) const;

    const Options &m_options;
    const Keys &m_keys;
    Accounts m_accounts;
    Outbox m_outbox;
    RateLimit m_tries;
};
