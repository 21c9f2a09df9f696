#pragma once

#include "backend/LocalizedError.h"

#include <QCoro/QCoroTask>
#include <QEventLoop>
#include <exception>
#include <functional>
#include <optional>
#include <type_traits>
#include <utility>
#include <variant>

using namespace Qt::StringLiterals;

/// How a task ended: with a value, or with an error. (QCoro::waitFor never returns when the task
/// throws.)
template <typename T>
struct Outcome {
    using Value = std::conditional_t<std::is_void_v<T>, std::monostate, T>;

    std::optional<Value> value;
    std::exception_ptr error;

    bool isOver() const { return value.has_value() || error != nullptr; }

    /// What the person would read; empty when the task succeeded.
    QString failure() const
    {
        const auto *const localized = errorAs<LocalizedError>();
        if (localized != nullptr)
            return localized->localizedDescription();
        return error ? u"(not a LocalizedError)"_s : QString();
    }

    /// The error when it is an `Error`, else null.
    template <typename Error>
    const Error *errorAs() const
    {
        try {
            if (error)
                std::rethrow_exception(error);
        } catch (const Error &known) {
            return &known;
        } catch (...) {
        }
        return nullptr;
    }
};

/// Notes in `outcome`, which must live until then, how `task` ends.
template <typename T>
QCoro::Task<void> note(QCoro::Task<T> task, Outcome<T> &outcome, std::function<void()> then = {})
{
    try {
        if constexpr (std::is_void_v<T>) {
            co_await task;
            outcome.value.emplace();
        } else {
            outcome.value = co_await task;
        }
    } catch (...) {
        outcome.error = std::current_exception();
    }
    if (then)
        then();
}

/// Runs the event loop until `task` is over.
template <typename T>
Outcome<T> outcomeOf(QCoro::Task<T> task)
{
    Outcome<T> outcome;
    QEventLoop loop;
    const auto noting = note(std::move(task), outcome, [&loop] { loop.quit(); });
    if (!outcome.isOver())
        loop.exec();
    return outcome;
}
