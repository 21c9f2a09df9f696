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

    /// The application ends before the request has.
    static TransportError ofClosing()
    {
        using namespace Qt::StringLiterals;
        return TransportError(u"The request was given up because the application is closing."_s);
    }

    /// The reply is too much for this machine.
    static TransportError ofMemory()
    {
        using namespace Qt::StringLiterals;
        return TransportError(u"There is not enough memory for the reply."_s);
    }

    QString localizedDescription() const override { return m_description; }
    const char *what() const noexcept override { return "TransportError"; }

private:
    QString m_description;
};
