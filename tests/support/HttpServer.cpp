#include "support/HttpServer.h"

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QTimer>

#include <algorithm>
#include <memory>
#include <optional>
#include <sys/socket.h>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

QByteArray head(int status, const HttpHeaders &headers)
{
    QByteArray text = "HTTP/1.1 " + QByteArray::number(status) + " Told\r\n";
    for (const auto &[name, value] : headers)
        text += name + ": " + value + "\r\n";
    return text;
}

// The request at the front of `bytes`, which then holds what follows it; none until it is whole.
std::optional<HttpRequest> takeRequest(QByteArray &bytes)
{
    const qsizetype end = bytes.indexOf("\r\n\r\n");
    if (end < 0)
        return std::nullopt;
    HttpRequest request;
    QList<QByteArray> lines = bytes.first(end).replace("\r\n", "\n").split('\n');
    const QList<QByteArray> words = lines.takeFirst().split(' ');
    request.method = words.value(0);
    request.target = words.value(1);
    request.version = words.value(2);
    for (const QByteArray &line : lines) {
        const qsizetype colon = line.indexOf(':');
        request.headers.append(
            {line.first(std::max<qsizetype>(colon, 0)), line.sliced(colon + 1).trimmed()});
    }
    const qsizetype length = request.header("Content-Length").toLongLong();
    if (bytes.size() < end + 4 + length)
        return std::nullopt;
    request.body = bytes.sliced(end + 4, length);
    request.raw = bytes.first(end + 4 + length);
    bytes.remove(0, end + 4 + length);
    return request;
}

void tearDown(QTcpSocket *socket)
{
    const linger now{1, 0};
    setsockopt(static_cast<int>(socket->socketDescriptor()), SOL_SOCKET, SO_LINGER, &now,
               sizeof now);
    socket->abort();
}

} // namespace

QByteArray HttpRequest::header(const QByteArray &name) const
{
    const auto found = std::find_if(headers.begin(), headers.end(), [&name](const auto &header) {
        return header.first.compare(name, Qt::CaseInsensitive) == 0;
    });
    return found == headers.end() ? QByteArray() : found->second;
}

HttpAnswer HttpAnswer::whole(int status, const QByteArray &body, const HttpHeaders &headers)
{
    return raw(head(status, headers) + "Content-Length: " + QByteArray::number(body.size())
               + "\r\n\r\n" + body);
}

HttpAnswer HttpAnswer::chunked(int status, const QList<QByteArray> &pieces,
                               const HttpHeaders &headers)
{
    QByteArray bytes = head(status, headers) + "Transfer-Encoding: chunked\r\n\r\n";
    for (const QByteArray &piece : pieces)
        bytes += QByteArray::number(piece.size(), 16) + "\r\n" + piece + "\r\n";
    return raw(bytes + "0\r\n\r\n");
}

HttpAnswer HttpAnswer::cut(int status, const QByteArray &body, qsizetype announced)
{
    return raw(head(status, {}) + "Content-Length: " + QByteArray::number(announced) + "\r\n\r\n"
               + body)
        .thenFin();
}

HttpAnswer HttpAnswer::raw(const QByteArray &bytes)
{
    HttpAnswer answer;
    answer.m_steps.append({Step::Kind::send, bytes});
    return answer;
}

HttpAnswer HttpAnswer::fin()
{
    return silence().thenFin();
}

HttpAnswer HttpAnswer::rst()
{
    return silence().thenRst();
}

HttpAnswer HttpAnswer::whenReleased() const
{
    HttpAnswer answer = *this;
    answer.m_steps.prepend({Step::Kind::hold});
    return answer;
}

HttpAnswer HttpAnswer::late(int milliseconds) const
{
    HttpAnswer answer = *this;
    answer.m_steps.prepend({Step::Kind::wait, {}, milliseconds});
    return answer;
}

HttpAnswer HttpAnswer::inPieces(qsizetype size, int pauseMilliseconds) const
{
    HttpAnswer answer;
    for (const Step &step : m_steps) {
        if (step.kind != Step::Kind::send) {
            answer.m_steps.append(step);
            continue;
        }
        for (qsizetype at = 0; at < step.bytes.size(); at += size) {
            answer.m_steps.append({Step::Kind::send, step.bytes.mid(at, size)});
            answer.m_steps.append({Step::Kind::wait, {}, pauseMilliseconds});
        }
    }
    return answer;
}

HttpAnswer HttpAnswer::then(const HttpAnswer &next) const
{
    HttpAnswer answer = *this;
    answer.m_steps.append(next.m_steps);
    return answer;
}

HttpAnswer HttpAnswer::thenFin() const
{
    HttpAnswer answer = *this;
    answer.m_steps.append({Step::Kind::fin});
    return answer;
}

HttpAnswer HttpAnswer::thenRst() const
{
    HttpAnswer answer = *this;
    answer.m_steps.append({Step::Kind::rst});
    return answer;
}

HttpServer::HttpServer(QObject *parent)
    : QObject(parent)
{
    answer(HttpAnswer::whole(200, "[]"));
    connect(&m_server, &QTcpServer::newConnection, this, &HttpServer::accept);
    if (!m_server.listen(QHostAddress::LocalHost))
        qFatal("no free port on the loopback interface");
}

void HttpServer::hangUp()
{
    close();
    const QList<QTcpSocket *> open = m_open.keys();
    for (QTcpSocket *socket : open)
        socket->abort();
    const QDeadlineTimer deadline(200);
    while (!open.isEmpty() && !deadline.hasExpired())
        QCoreApplication::processEvents(QEventLoop::AllEvents, 20);
}

QString HttpServer::base() const
{
    return u"http://127.0.0.1:%1"_s.arg(port());
}

void HttpServer::answer(const HttpAnswer &answer)
{
    m_handler = [answer](const HttpRequest &) { return answer; };
}

void HttpServer::answerInTurn(const QList<HttpAnswer> &answers)
{
    m_handler = [answers, next = qsizetype{0}](const HttpRequest &) mutable {
        return answers.at(std::min(next++, answers.size() - 1));
    };
}

void HttpServer::release()
{
    const QList<Held> held = std::exchange(m_held, {});
    for (const Held &answer : held) {
        if (answer.socket)
            run(answer.socket, answer.rest);
    }
}

void HttpServer::releaseOne(qsizetype which)
{
    const Held answer = m_held.takeAt(which);
    if (answer.socket)
        run(answer.socket, answer.rest);
}

void HttpServer::accept()
{
    while (QTcpSocket *const socket = m_server.nextPendingConnection()) {
        m_open.insert(socket, {++m_connections, {}});
        connect(socket, &QTcpSocket::readyRead, this, [this, socket] { read(socket); });
        connect(socket, &QTcpSocket::disconnected, this, [this, socket] {
            m_open.remove(socket);
            socket->deleteLater();
        });
        read(socket);
    }
}

void HttpServer::read(QTcpSocket *socket)
{
    const auto connection = m_open.find(socket);
    const QByteArray news = socket->readAll();
    if (!news.isEmpty() && !std::exchange(connection->hasSpoken, true))
        ++m_callers;
    connection->unread += news;
    while (auto request = takeRequest(connection->unread)) {
        request->connection = connection->number;
        m_requests.append(*request);
        const QList<HttpAnswer::Step> steps = m_handler(*request).m_steps;
        Q_EMIT requested();
        const QPointer<QTcpSocket> alive(socket);
        run(socket, steps);
        if (!alive || !m_open.contains(socket))
            return;
    }
}

void HttpServer::run(QTcpSocket *socket, const QList<HttpAnswer::Step> &steps)
{
    using Kind = HttpAnswer::Step::Kind;
    for (qsizetype i = 0; i < steps.size(); ++i) {
        const HttpAnswer::Step &step = steps.at(i);
        switch (step.kind) {
        case Kind::hold:
            m_held.append({socket, steps.sliced(i + 1)});
            return;
        case Kind::send:
            socket->write(step.bytes);
            break;
        case Kind::wait:
            QTimer::singleShot(step.milliseconds, socket,
                               [this, socket, rest = steps.sliced(i + 1)] { run(socket, rest); });
            return;
        case Kind::fin:
            socket->disconnectFromHost();
            return;
        case Kind::rst:
            // What was written before it is to be seen first.
            while (socket->bytesToWrite() > 0 && socket->waitForBytesWritten(1000)) { }
            tearDown(socket);
            return;
        }
    }
    if (socket->bytesToWrite() == 0) {
        Q_EMIT answered();
        return;
    }
    connect(socket, &QTcpSocket::bytesWritten, this, [this, socket] {
        if (socket->bytesToWrite() == 0)
            Q_EMIT answered();
    });
}
