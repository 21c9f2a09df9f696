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

/// What a mail asks its reader to do: confirm the address of a new account, or a new address, or
/// come back in without the password.
enum class MailKind { SignUp, EmailChange, Recovery };

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
    /// Adds an account with `data` (a JSON object) about its owner; nothing when the address has
    /// one. It `isConfirmed` at once, or later by a mail.
    std::optional<Account> add(const std::string &email, const std::string &password,
                               const std::string &data, bool isConfirmed);
    /// The account of that address, when the password is its own.
    std::optional<Account> matching(const std::string &email, const std::string &password);
    void confirm(const std::string &accountId);

    /// Sets a new password, which ends all sessions but this one.
    void changePassword(const std::string &accountId, const std::string &session,
                        const std::string &password);
    /// Adds what `data` (a JSON object) holds to what is known, and removes what is null there.
    void changeData(const std::string &accountId, const std::string &data);

    /// How many seconds are left of the `pause` after the last mail of that kind.
    int secondsUntilMail(const std::string &accountId, MailKind kind, int pause);
    /// Notes that a mail with this token is sent, in place of any earlier one. `newEmail` is the
    /// address that a change of address goes to.
    void expectAnswer(const std::string &accountId, MailKind kind, const std::string &token,
                      const std::string &newEmail = {});
    /// The address that an account wants to change to.
    std::optional<std::string> awaitedEmail(const std::string &accountId);
    /// The account that was sent this token within the last hour. Does what the mail was for: the
    /// address is confirmed, or changed. A token serves once.
    std::optional<Account> accept(MailKind kind, const std::string &token);

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
