#pragma once

#include "backend/Limits.h"
#include "backend/Request.h"

#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QTimer>
#include <optional>
#include <utility>

/// What an exchange ended with, as the network manager tells it.
struct Received {
    QNetworkReply::NetworkError error = QNetworkReply::NoError;
    std::optional<int> status;
    /// As it came, in its `encoding`.
    QByteArray body;
    /// The Content-Encoding, trimmed and in lower case.
    QByteArray encoding;
    /// How long the body was to be, if that was said.
    std::optional<qint64> announced;
    /// Where the reply points, as it was said; empty when it points nowhere.
    QUrl location;
    /// The body was given up because it is larger than the limit.
    bool isTooLarge = false;
};

/// One request on its way and the one reply to it: follows nothing and repeats nothing.
class Exchange : public QObject {
    Q_OBJECT

public:
    /// `reader` serves requests that only read. A write goes through a manager of its own: it finds
    /// no kept connection there that may have gone stale, and clearing the shared one's instead
    /// would stop the requests that are in flight on it.
    Exchange(QNetworkAccessManager &reader, const Limits &limits, QObject *parent);

    /// To be called once; ends with `ended`.
    void send(const Request &request);
    /// After `ended`, once.
    Received take() { return std::move(m_received); }

Q_SIGNALS:
    void ended();

private:
    void checkLength();
    void drain();
    void giveUp();
    void finish();

    QNetworkAccessManager &m_reader;
    Limits m_limits;
    QNetworkReply *m_reply = nullptr;
    QTimer m_nextTurn;
    Received m_received;
};
