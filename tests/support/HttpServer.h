#pragma once

#include <QElapsedTimer>
#include <QHash>
#include <QList>
#include <QPointer>
#include <QTcpServer>
#include <QTcpSocket>
#include <functional>
#include <utility>

using HttpHeaders = QList<std::pair<QByteArray, QByteArray>>;

/// One request as it came over the wire.
struct HttpRequest {
    QByteArray method;
    QByteArray target;
    QByteArray version;
    HttpHeaders headers;
    QByteArray body;
    /// All of it, letter by letter.
    QByteArray raw;
    /// Which connection it came over, counted from 1.
    int connection = 0;

    /// The value of the header, whatever the case of its name; null when there is none.
    QByteArray header(const QByteArray &name) const;
};

/// What the server does for one request, step by step.
class HttpAnswer {
public:
    /// A reply with a Content-Length; the connection stays open for more.
    static HttpAnswer whole(int status, const QByteArray &body, const HttpHeaders &headers = {});
    /// A reply in the chunked coding, a chunk for each piece.
    static HttpAnswer chunked(int status, const QList<QByteArray> &pieces,
                              const HttpHeaders &headers = {});
    /// A reply that announces more than it sends, and then ends the connection.
    static HttpAnswer cut(int status, const QByteArray &body, qsizetype announced);
    /// These bytes and nothing more: say nothing with none.
    static HttpAnswer raw(const QByteArray &bytes);

    /// Nothing at all, for ever.
    static HttpAnswer silence() { return {}; }
    /// The connection ends without an answer: properly (FIN), or torn down (RST).
    static HttpAnswer fin();
    static HttpAnswer rst();

    /// The same answer, begun when the server's release() is called.
    HttpAnswer whenReleased() const;
    /// The same answer, begun later.
    HttpAnswer late(int milliseconds) const;
    /// The same answer, its bytes in pieces of this size with a pause between.
    HttpAnswer inPieces(qsizetype size, int pauseMilliseconds) const;
    /// The same answer and then another.
    HttpAnswer then(const HttpAnswer &next) const;
    /// The same answer and then the end of the connection.
    HttpAnswer thenFin() const;
    HttpAnswer thenRst() const;

private:
    friend class HttpServer;

    struct Step {
        enum class Kind { hold, send, wait, fin, rst };
        Kind kind;
        QByteArray bytes = {};
        int milliseconds = 0;
    };
    QList<Step> m_steps;
};

/// A real HTTP server on a free port of the loopback interface, in the test's own event loop.
class HttpServer : public QObject {
    Q_OBJECT

public:
    using Handler = std::function<HttpAnswer(const HttpRequest &)>;

    explicit HttpServer(QObject *parent = nullptr);

    /// "http://127.0.0.1:port"
    QString base() const;
    quint16 port() const { return m_server.serverPort(); }
    /// Stops listening; the port then refuses connections.
    void close() { m_server.close(); }
    /// Stops for good and lets its clients notice. For the end of a program that may have left a
    /// request unanswered: the toolkit leaks what it is still waiting for when it is torn down.
    void hangUp();

    /// Answers every request thus.
    void answer(const HttpAnswer &answer);
    /// Answers the requests in turn; the last answer serves all that follow.
    void answerInTurn(const QList<HttpAnswer> &answers);
    void answerWith(const Handler &handler) { m_handler = handler; }

    /// Goes on with all answers that wait for it, or with one of them, counted from 0 in order of
    /// arrival.
    void release();
    void releaseOne(qsizetype which);

    /// Every request so far, in order of its arrival.
    const QList<HttpRequest> &requests() const { return m_requests; }
    int connections() const { return m_connections; }
    /// Those of the connections that brought a request, or a part of one.
    int callers() const { return m_callers; }

Q_SIGNALS:
    /// A request has arrived; its answer begins afterwards.
    void requested();
    /// The last byte of an answer was handed to the host.
    void answered();

private:
    void accept();
    void read(QTcpSocket *socket);
    void run(QTcpSocket *socket, const QList<HttpAnswer::Step> &steps);

    Handler m_handler;
    struct Connection {
        int number;
        QByteArray unread;
        bool hasSpoken = false;
    };
    QHash<QTcpSocket *, Connection> m_open;
    struct Held {
        QPointer<QTcpSocket> socket;
        QList<HttpAnswer::Step> rest;
    };
    QList<Held> m_held;
    QList<HttpRequest> m_requests;
    int m_connections = 0;
    int m_callers = 0;
    QTcpServer m_server; // last: its sockets report their end to the members above
};
