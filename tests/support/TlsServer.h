#pragma once

#include <QSslServer>

/// A service on the loopback interface that speaks HTTP over TLS, and would rather speak HTTP/2. It
/// answers every request with an empty list, or as it is told.
class TlsServer {
public:
    /// Shows `certificate`, one of TestCertificates.
    explicit TlsServer(const QByteArray &certificate);

    /// "https://localhost:port"
    QString base() const;
    /// All that clients have sent under the seal.
    const QByteArray &received() const { return m_received; }
    /// How many requests that were.
    qsizetype requests() const { return m_received.count("\r\n\r\n"); }

    /// What every request is answered with from now on; nothing with nothing.
    void answer(const QByteArray &bytes) { m_answer = bytes; }

private:
    QByteArray m_received;
    QByteArray m_answer = "HTTP/1.1 200 OK\r\nContent-Length: 2\r\n\r\n[]";
    QSslServer m_server; // last: its sockets report to the members above
};
