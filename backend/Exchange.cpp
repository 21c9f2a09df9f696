#include "backend/Exchange.h"

#include "backend/OneShotBody.h"

namespace {

// The manager makes one slash of two at the front of a path; given one more, it sends two.
QUrl sentAsIs(QUrl address)
{
    const QString path = address.path(QUrl::FullyEncoded);
    const QUrl::FormattingOptions asTarget =
        QUrl::RemoveScheme | QUrl::RemoveAuthority | QUrl::NormalizePathSegments;
    if (path.startsWith(QLatin1StringView("//"))
        && !address.toEncoded(asTarget | QUrl::FullyEncoded).startsWith("//"))
        address.setPath(u'/' + path, QUrl::StrictMode);
    return address;
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
    for (const auto attribute :
         {QNetworkRequest::CookieLoadControlAttribute, QNetworkRequest::CookieSaveControlAttribute,
          QNetworkRequest::AuthenticationReuseAttribute})
        prepared.setAttribute(attribute, QNetworkRequest::Manual);
    prepared.setTransferTimeout(static_cast<int>(limits.silence.count()));
    return prepared;
}

} // namespace

Exchange::Exchange(QNetworkAccessManager &reader, const Limits &limits, QObject *parent)
    : QObject(parent)
    , m_reader(reader)
    , m_limits(limits)
{
}

void Exchange::send(const Request &request)
{
    QNetworkRequest prepared = networkRequest(request, m_limits);
    if (request.verb == "GET") {
        m_reply = m_reader.get(prepared);
    } else {
        prepared.setAttribute(QNetworkRequest::DoNotBufferUploadDataAttribute, true);
        prepared.setHeader(QNetworkRequest::ContentLengthHeader, request.body.size());
        auto *const manager = new QNetworkAccessManager(this);
        m_reply =
            manager->sendCustomRequest(prepared, request.verb, new OneShotBody(request.body, this));
    }
    connect(m_reply, &QNetworkReply::metaDataChanged, this, &Exchange::checkLength);
    connect(m_reply, &QNetworkReply::readyRead, this, &Exchange::drain);
    connect(m_reply, &QNetworkReply::finished, this, &Exchange::end);
}

void Exchange::checkLength()
{
    const QVariant length = m_reply->header(QNetworkRequest::ContentLengthHeader);
    if (!length.isValid())
        return;
    m_received.announced = length.toLongLong();
    if (*m_received.announced > m_limits.largestReply)
        giveUp();
    else if (*m_received.announced > m_received.body.capacity())
        m_received.body.reserve(*m_received.announced);
}

void Exchange::drain()
{
    const qint64 available = m_reply->bytesAvailable();
    const qsizetype had = m_received.body.size();
    if (had + available > m_limits.largestReply)
        return giveUp();
    m_received.body.resize(had + available);
    const qint64 got = m_reply->read(m_received.body.data() + had, available);
    m_received.body.truncate(had + std::max<qint64>(got, 0));
}

void Exchange::giveUp()
{
    m_received.isTooLarge = true;
    finish();
}

void Exchange::end()
{
    // A reply that was broken off is closed already.
    if (m_reply->isOpen())
        drain();
    if (!m_received.isTooLarge)
        finish();
}

void Exchange::finish()
{
    m_reply->disconnect(this);
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
