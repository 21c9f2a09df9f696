#pragma once

#include "service/ConnectionPool.h"

#include <optional>
#include <string>

/// An account as the database holds it.
struct Account {
    std::string id;
    std::string json; ///< as the accounts' interface shows it
    bool isConfirmed = false;
};

/// A session's newest refresh token.
struct RefreshGrant {
    std::string token;
    std::string session;
};

/// What the database knows about the accounts. Passwords and tokens are kept as hashes only. Any
/// thread may call it; everything throws DatabaseError.
class Accounts {
public:
    explicit Accounts(ConnectionPool &sessions)
        : m_sessions(sessions)
    {
    }

    std::optional<Account> find(const std::string &email);
    std::optional<Account> findById(const std::string &id);
    /// Adds an account; nothing when the address has one. Unless it is `confirmationToken` that
    /// confirms it later, it is confirmed at once.
    std::optional<Account> add(const std::string &email, const std::string &password,
                               const std::optional<std::string> &confirmationToken);
    /// The account of that address, when the password is its own.
    std::optional<Account> matching(const std::string &email, const std::string &password);
    /// Whether the token has confirmed an account just now.
    bool confirm(const std::string &token);

    /// Begins a session and counts as a sign-in.
    RefreshGrant beginSession(const std::string &accountId);
    enum class RefreshFault { Unknown, AlreadyUsed };
    struct Refreshed {
        Account account;
        RefreshGrant grant;
    };
    /// Takes a refresh token for a new one. One that was used before ends its session, since two
    /// holders have it.
    std::optional<Refreshed> refresh(const std::string &token, RefreshFault *fault);
    bool hasSession(const std::string &session);
    /// Ends the sessions of an account: all, this one only, or all others.
    enum class Scope { Global, Local, Others };
    void endSessions(const std::string &accountId, const std::string &session, Scope scope);

private:
    ConnectionPool &m_sessions;
};
