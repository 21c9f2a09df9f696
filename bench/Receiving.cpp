#include "Receiving.h"

#include "Clocks.h"
#include "LoopbackService.h"
#include "backend/Exchange.h"
#include "backend/Inflate.h"

#define ZLIB_CONST
#include <zlib.h>

#include <QEventLoop>

#include <algorithm>
#include <arpa/inet.h>
#include <cstdio>
#include <cstdlib>
#include <limits>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>
#include <utility>
#include <variant>

namespace {

constexpr int turns = 15;

void insist(bool isRight)
{
    if (!isRight)
        std::abort();
}

/// By ourselves: until the whole body is there.
double receive(const LoopbackService &service, const QByteArray &body)
{
    const double begin = Clocks::wall();
    Exchange exchange{Limits()};
    QEventLoop loop;
    QObject::connect(&exchange, &Exchange::ended, &loop, &QEventLoop::quit);
    exchange.send({.verb = "GET",
                   .address = QUrl(QString::fromLatin1(service.base())),
                   .headers = {},
                   .body = {}});
    loop.exec();
    const double taken = Clocks::wall() - begin;
    insist(exchange.take().body == body);
    return taken;
}

/// The same into a buffer that has room for all of it.
double receiveRaw(const LoopbackService &service, const QByteArray &body)
{
    const double begin = Clocks::wall();
    const int socket = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    const QUrl base(QString::fromLatin1(service.base()));
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(static_cast<in_port_t>(base.port()));
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    insist(connect(socket, reinterpret_cast<const sockaddr *>(&address), sizeof address) == 0);
    constexpr QByteArrayView request = "GET / HTTP/1.1\r\nHost: 127.0.0.1\r\n\r\n";
    insist(send(socket, request.data(), static_cast<size_t>(request.size()), 0) == request.size());

    QByteArray reply(body.size() + 1'000, Qt::Uninitialized); // and its head
    qsizetype size = 0;
    qsizetype head = 0;
    while (head == 0 || size < head + body.size()) {
        const ssize_t got =
            recv(socket, reply.data() + size, static_cast<size_t>(reply.size() - size), 0);
        insist(got > 0);
        size += got;
        if (head == 0) {
            const qsizetype end = QByteArrayView(reply).first(size).indexOf("\r\n\r\n");
            head = end < 0 ? 0 : end + 4;
        }
    }
    close(socket);
    const double taken = Clocks::wall() - begin;
    insist(QByteArrayView(reply).sliced(head, body.size()) == body);
    return taken;
}

QByteArray packed(const QByteArray &body)
{
    z_stream stream{};
    insist(deflateInit2(&stream, Z_DEFAULT_COMPRESSION, Z_DEFLATED, 15 + 16, 8, Z_DEFAULT_STRATEGY)
           == Z_OK);
    QByteArray bytes(static_cast<qsizetype>(deflateBound(&stream, uLong(body.size()))),
                     Qt::Uninitialized);
    stream.next_in = reinterpret_cast<const Bytef *>(body.constData());
    stream.avail_in = uInt(body.size());
    stream.next_out = reinterpret_cast<Bytef *>(bytes.data());
    stream.avail_out = uInt(bytes.size());
    insist(deflate(&stream, Z_FINISH) == Z_STREAM_END);
    bytes.truncate(static_cast<qsizetype>(stream.total_out));
    deflateEnd(&stream);
    return bytes;
}

double inflateOwn(const QByteArray &bytes, const QByteArray &body)
{
    const double begin = Clocks::ofThread();
    const auto content = inflateGzip(bytes, Limits().largestReply);
    const double taken = Clocks::ofThread() - begin;
    insist(std::get<QByteArray>(content) == body);
    return taken;
}

double inflateRaw(const QByteArray &bytes, const QByteArray &body)
{
    const double begin = Clocks::ofThread();
    QByteArray content(body.size(), Qt::Uninitialized);
    z_stream stream{};
    insist(inflateInit2(&stream, 15 + 16) == Z_OK);
    stream.next_in = reinterpret_cast<const Bytef *>(bytes.constData());
    stream.avail_in = uInt(bytes.size());
    stream.next_out = reinterpret_cast<Bytef *>(content.data());
    stream.avail_out = uInt(content.size());
    insist(inflate(&stream, Z_FINISH) == Z_STREAM_END);
    inflateEnd(&stream);
    const double taken = Clocks::ofThread() - begin;
    insist(content == body);
    return taken;
}

void print(const char *name, double raw, double own)
{
    std::printf("| %s | %.1f | %.1f | %.2f |\n", name, raw, own, own / raw);
    std::fflush(stdout);
}

} // namespace

void measureReceiving(const QByteArray &body)
{
    std::puts("| of the reply | raw ms | aMorvelle ms | times |\n|---|---|---|---|");
    const LoopbackService service(body, {});
    constexpr double none = std::numeric_limits<double>::max();
    std::pair least{none, none};
    for (int turn = 0; turn < turns; ++turn) {
        least.first = std::min(least.first, receiveRaw(service, body));
        least.second = std::min(least.second, receive(service, body));
    }
    print("receiving", least.first, least.second);

    const QByteArray bytes = packed(body);
    least = {none, none};
    for (int turn = 0; turn < turns; ++turn) {
        least.first = std::min(least.first, inflateRaw(bytes, body));
        least.second = std::min(least.second, inflateOwn(bytes, body));
    }
    print("inflating", least.first, least.second);
}
