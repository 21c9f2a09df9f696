#include "backend/DecodeOnWorker.h"

#include "backend/DecodeFailure.h"
#include "backend/DiagnosticFile.h"
#include "backend/SupabaseError.h"

#include <functional>
#include <memory>
#include <optional>
#include <utility>
#include <variant>

QCoro::Task<QList<Event>> decodeOnWorker(Worker &worker, WaitingRoom &room, QByteArray body,
                                         QString diagnosticFile)
{
    struct Outcome {
        QList<Event> events;
        std::optional<QString> failure;
    };
    const auto outcome = std::make_shared<Outcome>();
    std::function<void()> job = [outcome, body = std::exchange(body, {}),
                                 path = std::move(diagnosticFile)] {
        auto result = decodeEvents(body);
        if (auto *const events = std::get_if<QList<Event>>(&result)) {
            outcome->events = std::move(*events);
            return;
        }
        writeDiagnosticFile(path, body);
        outcome->failure = decodeFailureMessage(std::get<DecodingError>(result), body);
    };
    QCoro::Task<void> decoding = onWorker(worker, room, std::move(job));
    co_await decoding;

    if (outcome->failure)
        throw SupabaseError::decodingFailed(*outcome->failure);
    co_return std::move(outcome->events);
}
