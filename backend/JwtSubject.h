#pragma once

#include <QString>
#include <optional>

/// The account's identifier that an access token carries ("sub" among the claims of a JSON Web
/// Token, RFC 7519); none when the token has no such text. The signature is not checked: the
/// service does that.
std::optional<QString> jwtSubject(const QString &token);
