#pragma once

#include "backend/LocalizedError.h"

/// No reply, or no whole one: the connection failed before the service could be judged.
class TransportError final : public LocalizedError {
public:
    /// `description`: one line of English that says what happened.
    explicit TransportError(const QString &description)
        : m_description(description)
    {
    }

    QString localizedDescription() const override { return m_description; }
    const char *what() const noexcept override { return "TransportError"; }

private:
    QString m_description;
};
