#pragma once

#include "backend/Limits.h"
#include "backend/Reply.h"
#include "backend/Request.h"
#include "backend/WaitingRoom.h"
#include "platform/Worker.h"

#include <QObject>

/// The one way out: sends requests over HTTP/1.1 and brings back whole replies, inflated.
///
/// A request reaches the service at most once, whatever the connection does. One that reads follows
/// redirects within its origin.
class Sender : public QObject {
    Q_OBJECT

public:
    /// Inflates on `worker`; both it and `room` must outlive this.
    Sender(Worker &worker, WaitingRoom &room, const Limits &limits, QObject *parent = nullptr);

    /// Throws TransportError when there is no whole reply. Any status is a reply.
    ///
    /// A chunked reply whose connection ends early may count as whole: the manager does not tell
    /// them apart. Its body is cut then, which a JSON or gzip reader notices.
    QCoro::Task<Reply> send(Request request);

private:
    QCoro::Task<QByteArray> inflated(QByteArray compressed);

    Worker &m_worker;
    WaitingRoom &m_room;
    Limits m_limits;
};
