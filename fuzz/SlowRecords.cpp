#include "fuzz/SlowRecords.h"

#include <optional>

using namespace Qt::StringLiterals;

namespace {

using Kind = SlowJson::Kind;

// The member under `key`, unless it is missing or null.
const SlowJson *present(const SlowJson &record, const QString &key)
{
    const SlowJson *const value = record.find(key);
    return value && value->kind != Kind::null ? value : nullptr;
}

bool readText(const SlowJson &record, const QString &key, std::optional<QString> &into)
{
    const SlowJson *const value = present(record, key);
    if (value)
        into = value->text;
    return !value || value->kind == Kind::text;
}

bool readText(const SlowJson &record, const QString &key, QString &into)
{
    std::optional<QString> text;
    const bool isText = readText(record, key, text);
    into = text.value_or(QString());
    return isText && text;
}

} // namespace

std::optional<Credentials> slowCredentials(const std::optional<SlowJson> &body)
{
    Credentials credentials;
    if (!body || body->kind != Kind::record || !readText(*body, u"email"_s, credentials.email)
        || !readText(*body, u"password"_s, credentials.password))
        return std::nullopt;
    return credentials;
}

std::optional<AuthResponse> slowAuthResponse(const std::optional<SlowJson> &body)
{
    AuthResponse response;
    if (!body || body->kind != Kind::record
        || !readText(*body, u"access_token"_s, response.access_token))
        return std::nullopt;
    if (const SlowJson *const user = present(*body, u"user"_s)) {
        AuthUser &read = response.user.emplace();
        if (user->kind != Kind::record || !readText(*user, u"id"_s, read.id)
            || !readText(*user, u"email"_s, read.email))
            return std::nullopt;
    }
    return response;
}

std::optional<AuthErrorResponse> slowAuthErrorResponse(const std::optional<SlowJson> &body)
{
    AuthErrorResponse response;
    if (!body || body->kind != Kind::record || !readText(*body, u"error"_s, response.error)
        || !readText(*body, u"error_description"_s, response.errorDescription))
        return std::nullopt;
    return response;
}
