#include "backend/SupabaseError.h"

#include "platform/Text.h"

#include <optional>

using namespace Qt::StringLiterals;

SupabaseError SupabaseError::invalidURL(const QString &base)
{
    return SupabaseError(Case::invalidURL, base);
}

SupabaseError SupabaseError::httpError(int status, const QByteArray &body)
{
    const QString code = u"HTTP "_s + QString::number(status);
    const std::optional<QString> text = textOfUtf8(body);
    return SupabaseError(Case::httpError, text && !text->isEmpty() ? code + u": "_s + *text : code,
                         status, body);
}

SupabaseError SupabaseError::decodingFailed(const QString &message)
{
    return SupabaseError(Case::decodingFailed, message);
}

SupabaseError SupabaseError::authError(const QString &message)
{
    return SupabaseError(Case::authError, message);
}

SupabaseError SupabaseError::missingConfig()
{
    return SupabaseError(Case::missingConfig);
}

SupabaseError SupabaseError::invalidResponse()
{
    return SupabaseError(Case::invalidResponse);
}

QString SupabaseError::errorDescription() const
{
    switch (m_case) {
    case Case::invalidURL:
        return u"Supabase URL is invalid: "_s + m_text;
    case Case::httpError:
    case Case::decodingFailed:
    case Case::authError:
        return m_text;
    case Case::missingConfig:
        return u"Missing SUPABASE_URL or SUPABASE_KEY."_s;
    case Case::invalidResponse:
        return u"Invalid response from server."_s;
    }
    Q_UNREACHABLE();
    return {};
}
