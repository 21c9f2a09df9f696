#include "backend/TransportFailure.h"

#include <chrono>
#include <optional>

using namespace Qt::StringLiterals;

namespace {

// The manager sets an error for each status from 400 up; those say no more than the status itself.
bool onlyTellsStatus(QNetworkReply::NetworkError error, int status)
{
    switch (error) {
    case QNetworkReply::ProtocolInvalidOperationError:
        return status >= 400;
    case QNetworkReply::ProxyAuthenticationRequiredError:
        return status == 407;
    case QNetworkReply::ContentReSendError:
        return status == 307 || status == 308 || status == 401;
    default:
        return error > 400 || (error > 200 && error < 300);
    }
}

// Where a body ends with its connection, the manager takes that end, now and then, for a reason to
// ask again, which it cannot: the reply is whole.
bool endsWithConnection(const Received &received)
{
    return received.isOpenEnded && received.status
        && received.error == QNetworkReply::ContentReSendError;
}

// The manager reports a cut body only under a status that it takes for a success.
bool isCut(const Received &received)
{
    if (!received.status || *received.status == 204 || *received.status == 304)
        return false; // these have no body
    return received.body.size() < received.announced.value_or(0);
}

// An interim answer (102, 103) only announces the reply, which the manager no longer waits for.
bool isInterim(const Received &received)
{
    return received.status && *received.status < 200;
}

QString lost()
{
    return u"The connection was lost before the reply was complete."_s;
}

QString text(const Received &received, const QUrl &address, const Limits &limits)
{
    switch (received.error) {
    case QNetworkReply::HostNotFoundError:
        return unknownHost(address.host()).localizedDescription();
    case QNetworkReply::ConnectionRefusedError:
        return u"The server \"%1\" refused the connection."_s.arg(address.host());
    case QNetworkReply::RemoteHostClosedError:
    case QNetworkReply::ContentReSendError:
        return lost();
    case QNetworkReply::OperationCanceledError:
        return u"The server did not answer for %1 seconds."_s.arg(
            std::chrono::ceil<std::chrono::seconds>(limits.silence).count());
    case QNetworkReply::TimeoutError:
        return u"The server \"%1\" cannot be reached: connecting took too long."_s.arg(
            address.host());
    case QNetworkReply::SslHandshakeFailedError:
        return (received.isDistrusted
                    ? u"The secure connection failed: the certificate of \"%1\" was refused."_s
                    : u"The secure connection failed: \"%1\" does not speak TLS as it should."_s)
            .arg(address.host());
    case QNetworkReply::TemporaryNetworkFailureError:
    case QNetworkReply::NetworkSessionFailedError:
        return u"There is no network connection."_s;
    case QNetworkReply::ProxyConnectionRefusedError:
    case QNetworkReply::ProxyConnectionClosedError:
    case QNetworkReply::ProxyNotFoundError:
    case QNetworkReply::ProxyTimeoutError:
    case QNetworkReply::ProxyAuthenticationRequiredError:
    case QNetworkReply::UnknownProxyError:
        return u"The network's proxy did not let the request through."_s;
    case QNetworkReply::ProtocolFailure:
    case QNetworkReply::ProtocolUnknownError:
        return u"The reply is broken: it does not keep to HTTP."_s;
    default:
        return u"The connection failed before there was a reply."_s;
    }
}

} // namespace

TransportError unknownHost(const QString &host)
{
    return TransportError(u"The server \"%1\" cannot be found."_s.arg(host));
}

TransportError tooLargeReply(qint64 largest)
{
    return TransportError(
        u"The reply was given up: it is larger than %1 MiB."_s.arg(largest >> 20));
}

std::optional<TransportError> transportFailure(const Received &received, const QUrl &address,
                                               const Limits &limits)
{
    if (received.hasRunOut)
        return TransportError::ofMemory();
    if (received.isTooLarge)
        return tooLargeReply(limits.largestReply);
    if (isInterim(received))
        return TransportError(u"The reply is broken: an interim answer came in its place."_s);
    if (isCut(received) && received.error != QNetworkReply::OperationCanceledError)
        return TransportError(lost());
    if (received.error == QNetworkReply::NoError || endsWithConnection(received)
        || (received.status && onlyTellsStatus(received.error, *received.status)))
        return std::nullopt;
    return TransportError(text(received, address, limits));
}
