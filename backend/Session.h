#pragma once

#include <QString>
#include <optional>

/// Who is signed in. Lives for one run; nothing of it is stored.
struct Session {
    /// The bearer token: a member is signed in exactly when it is present.
    std::optional<QString> accessToken;
    /// The account's identifier, which owns the events it created.
    std::optional<QString> userId;
    /// The account's e-mail address, for display.
    std::optional<QString> userEmail;

    bool operator==(const Session &) const = default;
};
