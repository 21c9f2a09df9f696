#include "backend/Sender.h"

#include "backend/Exchange.h"
#include "backend/Inflate.h"
#include "backend/OnWorker.h"
#include "backend/Redirects.h"
#include "backend/TransportFailure.h"

#include <algorithm>
#include <functional>
#include <memory>
#include <utility>
#include <variant>

using namespace Qt::StringLiterals;

namespace {

// The manager writes values out as they are: a line feed in a token would begin another header, or
// another request.
bool fitsHeader(const QByteArray &value)
{
    return std::all_of(value.begin(), value.end(),
                       [](char c) { return (c >= 0x20 && c < 0x7F) || c == '\t'; });
}

void requireFitting(const Request &request)
{
    for (const auto &[name, value] : request.headers) {
        if (!fitsHeader(value))
            throw TransportError(
                u"The request was not sent: its header \"%1\" has a character that no header "
                "can carry."_s.arg(QLatin1StringView(name)));
    }
}

struct Later {
    void operator()(QObject *object) const { object->deleteLater(); }
};

} // namespace

Sender::Sender(Worker &worker, WaitingRoom &room, const Limits &limits, QObject *parent)
    : QObject(parent)
    , m_worker(worker)
    , m_room(room)
    , m_limits(limits)
{
}

QCoro::Task<Reply> Sender::send(Request request)
{
    requireFitting(request);
    Received received;
    for (int redirects = 0;; ++redirects) {
        // What the address says before the host is not for the service: it would be a second
        // authority, and the manager would answer challenges with it by sending once more.
        request.address.setUserInfo({});
        // Resumed inside its signal, hence not to be deleted at once.
        const std::unique_ptr<Exchange, Later> exchange(new Exchange(m_limits, this));
        WaitingRoom::Seat end(m_room);
        connect(exchange.get(), &Exchange::ended, exchange.get(), end.wake());
        exchange->send(request);
        co_await end;

        received = exchange->take();
        const auto failure = transportFailure(received, request.address, m_limits);
        if (failure)
            throw *failure;
        const auto next = redirected(request, received.status, received.location);
        if (!next || redirects == mostRedirects)
            break;
        request.address = *next;
    }

    Reply reply{received.status, std::move(received.body)};
    if (reply.body.isEmpty() || received.encoding.isEmpty() || received.encoding == "identity")
        co_return reply;
    if (received.encoding != "gzip" && received.encoding != "x-gzip")
        throw TransportError(u"The reply is packed in a way that was not asked for."_s);
    QCoro::Task<QByteArray> body = inflated(std::move(reply.body));
    reply.body = co_await body;
    co_return reply;
}

QCoro::Task<QByteArray> Sender::inflated(QByteArray compressed)
{
    using Outcome = std::variant<QByteArray, InflateFault>;
    const auto outcome = std::make_shared<Outcome>();
    std::function<void()> job = [outcome, compressed = std::exchange(compressed, {}),
                                 largest = m_limits.largestReply] {
        *outcome = inflateGzip(compressed, largest);
    };
    QCoro::Task<void> inflating = onWorker(m_worker, m_room, std::move(job));
    co_await inflating;

    if (const auto *const fault = std::get_if<InflateFault>(outcome.get())) {
        switch (*fault) {
        case InflateFault::broken:
            throw TransportError(u"The reply is broken: its compressed body cannot be read."_s);
        case InflateFault::tooLarge:
            throw tooLargeReply(m_limits.largestReply);
        }
    }
    co_return std::get<QByteArray>(std::move(*outcome));
}
