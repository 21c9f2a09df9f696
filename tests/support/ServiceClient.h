#pragma once

#include <QByteArray>
#include <QJsonArray>
#include <QJsonObject>
#include <QList>
#include <QString>

#include <utility>

/// What came back, as it came.
struct ServiceReply {
    int status = 0; ///< 0 when there was no reply
    QByteArray body;
    QList<std::pair<QByteArray, QByteArray>> headers;

    QByteArray header(const QByteArray &name) const;
    QJsonObject object() const;
    QJsonArray array() const;
};

using Headers = QList<std::pair<QByteArray, QByteArray>>;

/// Sends one request over a bare socket and waits for the reply: nothing is added, repaired, packed
/// or sent twice on the way. `target` is the path with its query, already encoded.
ServiceReply exchange(const QString &baseUrl, const QByteArray &verb, const QByteArray &target,
                      const Headers &headers = {}, const QByteArray &body = {});

/// A token with these claims, signed as the service signs its own, or by an `algorithm` of "none"
/// not signed at all.
QByteArray signedToken(const QJsonObject &claims, const QByteArray &secret,
                       const QByteArray &algorithm = "HS256");
