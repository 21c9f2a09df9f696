#pragma once

#include "platform/DecodingError.h"

#include <QByteArray>
#include <QString>

#include <variant>

/// An e-mail address and a password, exactly as typed.
struct Credentials {
    QString email;
    QString password;
    bool operator==(const Credentials &) const = default;
};

/// The JSON object of an e-mail address and a password, as `decodeRecord` reads it. May be called
/// on any thread.
std::variant<Credentials, DecodingError> decodeCredentials(const QByteArray &body);

/// The same object of `credentials`: what the service is sent, and what is remembered.
QByteArray encodeCredentials(const Credentials &credentials);
