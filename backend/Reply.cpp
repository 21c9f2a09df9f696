#include "backend/Reply.h"

#include "backend/SupabaseError.h"

QByteArray judged(std::optional<int> status, QByteArray body)
{
    if (!status)
        throw SupabaseError::invalidResponse();
    if (*status < 200 || *status > 299)
        throw SupabaseError::httpError(*status, body);
    return body;
}
