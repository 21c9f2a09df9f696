#include "backend/Exchange.h"

#include "backend/OneShotBody.h"

#include <QCoreApplication>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

/// So much is taken over in one turn of the event loop, in bytes: about a millisecond. A thread
/// that was held up finds dozens of megabytes at once, and would be held up again by copying them.
constexpr qint64 mostInOneTurn = 2'000'000;

// The path that the manager sends for an address.
QString sentPath(const QUrl &address)
{
    const QUrl sent(address.adjusted(QUrl::NormalizePathSegments | QUrl::RemoveQuery));
    return sent.path(QUrl::FullyEncoded);
}

// Of slashes at the front of a path the manager drops one: give it one more.
QUrl sentAsIs(const QUrl &address)
{
    const QString path = address.path(QUrl::FullyEncoded);
    if (!path.startsWith("//"_L1) || sentPath(address) == path)
        return address;
    QUrl longer = address;
    longer.setPath(u'/' + path, QUrl::StrictMode);
    return sentPath(longer) == path ? longer : address;
}

QNetworkRequest networkRequest(const Request &request, const Limits &limits)
{
    QNetworkRequest prepared(sentAsIs(request.address));
    for (const auto &[name, value] : request.headers)
        prepared.setRawHeader(name, value);
    // Asked for in so many words, gzip comes through to us: the manager would inflate it on the
    // main thread and refuses honest replies of some dozens of megabytes.
    prepared.setRawHeader("Accept-Encoding", "gzip");
    // Left out, the manager claims to be a browser.
    prepared.setRawHeader("User-Agent", "aMorvelle");

    prepared.setAttribute(QNetworkRequest::RedirectPolicyAttribute,
                          QNetworkRequest::ManualRedirectPolicy);
    // The same protocol everywhere: over TLS the manager would else choose HTTP/2 and its own rules
    // of repeating.
    prepared.setAttribute(QNetworkRequest::Http2AllowedAttribute, false);
    prepared.setAttribute(QNetworkRequest::AuthenticationReuseAttribute, QNetworkRequest::Manual);
    prepared.setTransferTimeout(static_cast<int>(limits.silence.count()));
    return prepared;
}

} // namespace

Exchange::Exchange(const Limits &limits, QObject *parent)
    : QObject(parent)
    , m_manager(new QNetworkAccessManager(this))
    , m_limits(limits)
{
    m_nextTurn.setSingleShot(true);
    connect(&m_nextTurn, &QTimer::timeout, this, &Exchange::drain);
}

void Exchange::send(const Request &request)
{
    QNetworkRequest prepared = networkRequest(request, m_limits);
    // What has no body, a read too, gets an empty one: only a body that cannot be rewound keeps the
    // manager from sending again.
    prepared.setAttribute(QNetworkRequest::DoNotBufferUploadDataAttribute, true);
    prepared.setHeader(QNetworkRequest::ContentLengthHeader, request.body.size());
    m_reply =
        m_manager->sendCustomRequest(prepared, request.verb, new OneShotBody(request.body, this));
    connect(m_reply, &QNetworkReply::metaDataChanged, this, &Exchange::checkLength);
    connect(m_reply, &QNetworkReply::readyRead, &m_nextTurn, qOverload<>(&QTimer::start));
    connect(m_reply, &QNetworkReply::sslErrors, this, [this] { m_received.isDistrusted = true; });
    connect(m_reply, &QNetworkReply::finished, this, &Exchange::drain);
    // Left alone, the manager hands the request to its thread in a later turn of the event loop,
    // behind all that waits there: at the start, the window's first picture.
    QCoreApplication::sendPostedEvents(m_reply, QEvent::MetaCall);
}

void Exchange::checkLength()
{
    // A body in chunks says itself where it ends, whatever else was said of its length.
    if (m_reply->rawHeader("Transfer-Encoding").toLower().contains("chunked"))
        return;
    const QVariant length = m_reply->header(QNetworkRequest::ContentLengthHeader);
    m_received.isOpenEnded = !length.isValid() || length.toLongLong() < 0;
    if (m_received.isOpenEnded)
        return;
    m_received.announced = length.toLongLong();
    if (*m_received.announced > m_limits.largestReply)
        giveUp();
}

void Exchange::drain()
{
    // A reply that was broken off is closed already.
    const qint64 available = m_reply->isOpen() ? m_reply->bytesAvailable() : 0;
    const qsizetype had = m_received.body.size();
    if (had + available > m_limits.largestReply)
        return giveUp();
    const qint64 taken = std::min(available, mostInOneTurn);
    if (taken > 0) {
        if (!grow(taken)) {
            m_received.hasRunOut = true;
            return finish();
        }
        const qint64 got = m_reply->read(m_received.body.data() + had, taken);
        m_received.body.truncate(had + std::max<qint64>(got, 0));
    }
    if (available > taken)
        m_nextTurn.start();
    else if (m_reply->isFinished())
        finish();
}

bool Exchange::grow(qint64 bytes)
{
    // With what has come, not at once to what was announced: that is only somebody's word.
    try {
        m_received.body.resize(m_received.body.size() + bytes);
    } catch (const std::bad_alloc &) {
        return false;
    }
    return true;
}

void Exchange::giveUp()
{
    m_received.isTooLarge = true;
    finish();
}

void Exchange::finish()
{
    m_nextTurn.stop();
    m_reply->disconnect(this);
    m_reply->disconnect(&m_nextTurn);
    m_received.error = m_reply->error();
    const QVariant status = m_reply->attribute(QNetworkRequest::HttpStatusCodeAttribute);
    if (status.isValid())
        m_received.status = status.toInt();
    m_received.encoding = m_reply->rawHeader("Content-Encoding").trimmed().toLower();
    m_received.location = m_reply->attribute(QNetworkRequest::RedirectionTargetAttribute).toUrl();
    // Deleting it breaks off what is still on its way.
    m_reply->deleteLater();
    Q_EMIT ended();
}
