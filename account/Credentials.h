#pragma once

#include <QString>

/// An e-mail address and a password, exactly as typed.
struct Credentials {
    QString email;
    QString password;
    bool operator==(const Credentials &) const = default;
};
