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
    /// Nothing said how long the body was to be: it ends with its connection.
    bool isOpenEnded = false;
    /// Where the reply points, as it was said; empty when it points nowhere.
    QUrl location;
    /// The certificate that the other side showed is not to be trusted.
    bool isDistrusted = false;
    /// The body was given up because it is larger than the limit, or than there is memory for.
    bool isTooLarge = false;
    bool hasRunOut = false;
};

/// One request on its way and the one reply to it: follows nothing and repeats nothing.
///
/// Each has a network manager, and thus a connection, of its own. Left to itself the manager sends
/// again what a connection swallowed, on a fresh connection too, and takes an interim answer (103,
/// say) for the reply, so that the real one answers whatever asks next over that connection. Here
/// nothing can ask next.
class Exchange : public QObject {
    Q_OBJECT

public:
    explicit Exchange(const Limits &limits, QObject *parent = nullptr);

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
    /// Makes the body larger by this much; whether there was memory for it.
    bool grow(qint64 bytes);
    void finish();

    // A child, which goes when nothing of this is called any more: the manager's end is one of its
    // reply, too, which would be told to what is half gone.
    QNetworkAccessManager *m_manager;
    Limits m_limits;
    QNetworkReply *m_reply = nullptr;
    QTimer m_nextTurn;
    Received m_received;
};
