#pragma once

#include "backend/Request.h"

#include <QCoroTask>

#include <QDateTime>
#include <QNetworkAccessManager>
#include <QString>

class QNetworkReply;

/// What the project answered, or why it did not.
struct Answer {
    int status = 0; ///< 0: there was no answer
    QByteArray body;
    QDateTime date; ///< the service's clock, if it told
    QString failure; ///< why there was no answer, in French
    bool isRefusedCertificate = false;

    bool isSuccess() const { return status >= 200 && status < 300; }
    /// The "code" of an error's body; empty without one.
    QString code() const;
};

/// Asks a project one thing after the other and tells what came, headers included. For one thread.
class Probe {
public:
    QCoro::Task<Answer> ask(Request request);

private:
    QNetworkAccessManager m_manager;
};
