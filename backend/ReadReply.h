#pragma once

#include "backend/OnWorker.h"
#include "backend/Reply.h"
#include "backend/SupabaseError.h"
#include "backend/UndecodableReply.h"

#include <functional>
#include <memory>
#include <optional>
#include <utility>

/// The largest body, in bytes, that is read where it came in: well under a millisecond's work.
inline constexpr qsizetype mostReadHere = qsizetype{64} * 1024;

/// What `read` makes of the reply: at once of one with a small body, else on the worker's thread,
/// where the reply is freed too. It may throw SupabaseError and UndecodableReply, which are passed
/// on.
template <typename T>
QCoro::Task<T> readReply(Worker &worker, WaitingRoom &room, Reply reply,
                         std::function<T(const Reply &)> read)
{
    if (reply.body.size() <= mostReadHere)
        co_return read(reply);

    struct Outcome {
        std::optional<T> value;
        std::optional<SupabaseError> refusal;
        std::optional<UndecodableReply> undecodable;
    };
    const auto outcome = std::make_shared<Outcome>();
    std::function<void()> job = [outcome, reply = std::exchange(reply, {}),
                                 read = std::exchange(read, {})] {
        try {
            outcome->value = read(reply);
        } catch (const SupabaseError &error) {
            outcome->refusal = error;
        } catch (const UndecodableReply &error) {
            outcome->undecodable = error;
        }
    };
    QCoro::Task<void> reading = onWorker(worker, room, std::move(job));
    co_await reading;

    if (outcome->refusal)
        throw *outcome->refusal;
    if (outcome->undecodable)
        throw *outcome->undecodable;
    co_return std::move(*outcome->value);
}
