#pragma once

#include "backend/LocalizedError.h"

#include <QByteArray>

/// The failures of configuration, of HTTP and of the service: one closed type. Failures of the
/// transport are not among them, see TransportError.
class SupabaseError final : public LocalizedError {
public:
    enum class Case {
        invalidURL,
        httpError,
        decodingFailed,
        authError,
        missingConfig,
        invalidResponse,
    };

    /// The base address, with the operation's path behind it, is no address.
    static SupabaseError invalidURL(const QString &base);
    /// The service answered with a status outside 200-299.
    static SupabaseError httpError(int status, const QByteArray &body);
    /// The service answered with success and a body that cannot be used.
    static SupabaseError decodingFailed(const QString &message);
    /// Nobody is signed in, or the service refused to sign in or up.
    static SupabaseError authError(const QString &message);
    /// There is no base address or no key to send requests with.
    static SupabaseError missingConfig();
    /// What answered does not speak HTTP.
    static SupabaseError invalidResponse();

    Case kind() const { return m_case; }
    /// The HTTP status of an `httpError`, else 0.
    int status() const { return m_status; }
    /// The reply's unchanged body of an `httpError`, else empty.
    const QByteArray &body() const { return m_body; }

    /// The text that the person reads.
    QString errorDescription() const;
    QString localizedDescription() const override { return errorDescription(); }
    const char *what() const noexcept override { return "SupabaseError"; }

    friend bool operator==(const SupabaseError &a, const SupabaseError &b)
    {
        return a.m_case == b.m_case && a.m_text == b.m_text && a.m_status == b.m_status
            && a.m_body == b.m_body;
    }

private:
    explicit SupabaseError(Case which, const QString &text = {}, int status = 0,
                           const QByteArray &body = {})
        : m_case(which)
        , m_text(text)
        , m_status(status)
        , m_body(body)
    {
    }

    Case m_case;
    // The base address of invalidURL, else the text as it is read: a body is decoded once, where
    // the error is made, which may be another thread.
    QString m_text;
    int m_status;
    QByteArray m_body;
};
