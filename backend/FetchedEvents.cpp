#include "backend/FetchedEvents.h"

#include "backend/DecodeFailure.h"
#include "backend/DiagnosticFile.h"
#include "backend/SupabaseError.h"

#include <utility>
#include <variant>

QList<Event> eventsOf(const Reply &reply, const QString &diagnosticFile)
{
    const QByteArray body = judged(reply.status, reply.body);
    auto decoded = decodeEvents(body);
    if (const auto *const error = std::get_if<DecodingError>(&decoded)) {
        writeDiagnosticFile(diagnosticFile, body);
        throw SupabaseError::decodingFailed(decodeFailureMessage(*error, body));
    }
    return std::get<QList<Event>>(std::move(decoded));
}
