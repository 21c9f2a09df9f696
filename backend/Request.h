#pragma once

#include <QByteArray>
#include <QList>
#include <QUrl>
#include <utility>

/// One request to the service, complete but for what HTTP itself adds.
struct Request {
    QByteArray verb;
    QUrl address;
    QList<std::pair<QByteArray, QByteArray>> headers;
    QByteArray body;

    bool operator==(const Request &) const = default;
};
