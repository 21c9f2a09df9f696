#pragma once

#include "platform/DecodingError.h"

#include <QByteArray>
#include <optional>
#include <variant>

/// The account of a signed-in user.
struct AuthUser {
    QString id;
    std::optional<QString> email;
    bool operator==(const AuthUser &) const = default;
};

/// What the service answers to a sign-in or sign-up that succeeded.
struct AuthResponse {
    std::optional<QString> access_token;
    std::optional<AuthUser> user;
    bool operator==(const AuthResponse &) const = default;
};

/// What the service answers to a sign-in or sign-up that failed; the key of `errorDescription` is
/// "error_description".
struct AuthErrorResponse {
    std::optional<QString> error;
    std::optional<QString> errorDescription;
    bool operator==(const AuthErrorResponse &) const = default;
};

/// The records of JSON bodies, as `decodeRecord` reads them. May be called on any thread.
std::variant<AuthResponse, DecodingError> decodeAuthResponse(const QByteArray &body);
std::variant<AuthErrorResponse, DecodingError> decodeAuthErrorResponse(const QByteArray &body);
