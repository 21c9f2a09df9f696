#pragma once

#include "support/HttpServer.h"

#include <QJsonDocument>
#include <QJsonObject>

using namespace Qt::StringLiterals;

/// The answer that signs in the user with this id.
inline HttpAnswer granting(const QByteArray &userId = "moi")
{
    return HttpAnswer::whole(200, R"({"access_token":"jeton","user":{"id":")" + userId + R"("}})");
}

/// The answer to a wrong password, and what a person reads of it.
inline HttpAnswer refusing()
{
    return HttpAnswer::whole(
        400, R"({"error":"invalid_grant","error_description":"Invalid login credentials"})");
}
inline const QString refusal = u"Invalid login credentials"_s;

/// The requests that have come to a service since this was made. The service must outlive it.
class Sent {
public:
    explicit Sent(const HttpServer &server)
        : m_server(&server)
        , m_before(server.requests().size())
    {
    }

    int count() const { return static_cast<int>(m_server->requests().size() - m_before); }
    const HttpRequest &request(int number = 0) const
    {
        return m_server->requests().at(m_before + number);
    }
    QJsonObject body(int number = 0) const
    {
        return QJsonDocument::fromJson(request(number).body).object();
    }

private:
    const HttpServer *m_server;
    qsizetype m_before;
};
