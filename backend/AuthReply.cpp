#include "backend/AuthReply.h"

#include "backend/JwtSubject.h"
#include "backend/SupabaseError.h"
#include "backend/UndecodableReply.h"
#include "platform/Text.h"

#include <optional>
#include <variant>

namespace {

QString reasonOf(const QByteArray &body, const QString &fallback)
{
    const auto decoded = decodeAuthErrorResponse(body);
    if (const auto *const record = std::get_if<AuthErrorResponse>(&decoded))
        return record->errorDescription.value_or(record->error.value_or(fallback));
    const std::optional<QString> text = textOfUtf8(body);
    return text && !text->isEmpty() ? *text : fallback;
}

QByteArray bodyOfSuccess(const Reply &reply, const QString &fallback)
{
    try {
        return judged(reply.status, reply.body);
    } catch (const SupabaseError &error) {
        if (error.kind() != SupabaseError::Case::httpError)
            throw;
        throw SupabaseError::authError(reasonOf(error.body(), fallback));
    }
}

} // namespace

AuthResponse granted(const Reply &reply, const QString &fallback)
{
    const auto decoded = decodeAuthResponse(bodyOfSuccess(reply, fallback));
    if (const auto *const error = std::get_if<DecodingError>(&decoded))
        throw UndecodableReply(*error);
    return std::get<AuthResponse>(decoded);
}

Session sessionOf(const AuthResponse &response, const QString &email)
{
    Session session;
    session.accessToken = response.access_token;
    session.userEmail = email;
    if (response.user) {
        session.userEmail = response.user->email.value_or(email);
        session.userId = response.user->id;
    } else if (response.access_token) {
        session.userId = jwtSubject(*response.access_token);
    }
    return session;
}
