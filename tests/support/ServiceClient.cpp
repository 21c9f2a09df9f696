#include "support/ServiceClient.h"

#include <QJsonDocument>
#include <QMessageAuthenticationCode>
#include <QTcpSocket>
#include <QUrl>

namespace {

QByteArray base64(const QByteArray &bytes)
{
    return bytes.toBase64(QByteArray::Base64UrlEncoding | QByteArray::OmitTrailingEquals);
}

} // namespace

QByteArray ServiceReply::header(const QByteArray &name) const
{
    for (const auto &[known, value] : headers) {
        if (known.compare(name, Qt::CaseInsensitive) == 0)
            return value;
    }
    return {};
}

QJsonObject ServiceReply::object() const
{
    return QJsonDocument::fromJson(body).object();
}

QJsonArray ServiceReply::array() const
{
    return QJsonDocument::fromJson(body).array();
}

ServiceReply exchange(const QString &baseUrl, const QByteArray &verb, const QByteArray &target,
                      const Headers &headers, const QByteArray &body)
{
    const QUrl url(baseUrl);
    QTcpSocket socket;
    socket.connectToHost(url.host(), static_cast<quint16>(url.port()));
    if (!socket.waitForConnected(5000))
        return {};
    QByteArray request = verb + ' ' + target
        + " HTTP/1.1\r\nHost: 127.0.0.1\r\n"
          "Connection: close\r\n";
    for (const auto &[name, value] : headers)
        request += name + ": " + value + "\r\n";
    if (!body.isEmpty() || verb == "POST" || verb == "PATCH")
        request += "Content-Length: " + QByteArray::number(body.size()) + "\r\n";
    socket.write(request + "\r\n" + body);
    QByteArray answer;
    while (socket.state() == QAbstractSocket::ConnectedState && socket.waitForReadyRead(20'000))
        answer += socket.readAll();
    answer += socket.readAll();

    ServiceReply reply;
    const auto end = answer.indexOf("\r\n\r\n");
    if (end < 0)
        return reply;
    reply.body = answer.mid(end + 4);
    const QList<QByteArray> lines = answer.left(end).split('\n');
    reply.status = lines.first().split(' ').value(1).toInt();
    for (const QByteArray &line : lines.mid(1)) {
        const auto colon = line.indexOf(':');
        reply.headers.append({line.left(colon), line.mid(colon + 1).trimmed()});
    }
    return reply;
}

QByteArray signedToken(const QJsonObject &claims, const QByteArray &secret,
                       const QByteArray &algorithm)
{
    const QByteArray header = "{\"alg\":\"" + algorithm + "\",\"typ\":\"JWT\"}";
    const QByteArray content =
        base64(header) + '.' + base64(QJsonDocument(claims).toJson(QJsonDocument::Compact));
    const QByteArray signature =
        QMessageAuthenticationCode::hash(content, secret, QCryptographicHash::Sha256);
    return content + '.' + (algorithm == "none" ? QByteArray() : base64(signature));
}
