#include "check/Probe.h"

#include "platform/Gmt.h"

#include <QCoroNetworkReply>

#include <QJsonDocument>
#include <QJsonObject>
#include <QLocale>
#include <QNetworkReply>
#include <QSslError>
#include <QStringList>

#include <chrono>
#include <memory>

using namespace Qt::StringLiterals;

namespace {

/// Whoever has called the program sits before it.
constexpr std::chrono::seconds patience{20};

QDateTime httpDate(const QByteArray &header)
{
    // RFC 9110: always in English, always GMT.
    const QDateTime date = QLocale::c().toDateTime(QString::fromLatin1(header).trimmed(),
                                                   u"ddd, dd MMM yyyy HH:mm:ss 'GMT'"_s);
    return QDateTime(date.date(), date.time(), inGmt);
}

QString reason(const QSslError &error)
{
    switch (error.error()) {
    case QSslError::CertificateExpired:
        return u"il a expiré"_s;
    case QSslError::CertificateNotYetValid:
        return u"il n'est pas encore valable (l'horloge de cet ordinateur est-elle juste ?)"_s;
    case QSslError::HostNameMismatch:
        return u"il est fait pour une autre adresse"_s;
    case QSslError::SelfSignedCertificate:
    case QSslError::SelfSignedCertificateInChain:
    case QSslError::UnableToGetLocalIssuerCertificate:
    case QSslError::UnableToGetIssuerCertificate:
    case QSslError::UnableToVerifyFirstCertificate:
    case QSslError::CertificateUntrusted:
        return u"aucune autorité connue de cet ordinateur ne répond de lui"_s;
    default:
        return error.errorString();
    }
}

QString failureOf(QNetworkReply::NetworkError error)
{
    switch (error) {
    case QNetworkReply::HostNotFoundError:
        return u"aucun serveur de ce nom n'est connu ici"_s;
    case QNetworkReply::ConnectionRefusedError:
        return u"le serveur refuse la connexion"_s;
    case QNetworkReply::OperationCanceledError:
    case QNetworkReply::TimeoutError:
        return u"le serveur ne répond pas"_s;
    case QNetworkReply::SslHandshakeFailedError:
        return u"la connexion n'a pas pu être chiffrée"_s;
    default:
        return u"la connexion s'est interrompue, ou ce n'est pas un serveur du web"_s;
    }
}

} // namespace

QString Answer::code() const
{
    return QJsonDocument::fromJson(body).object().value(u"code"_s).toString();
}

QCoro::Task<Answer> Probe::ask(Request request)
{
    QNetworkRequest prepared(request.address);
    // As the application goes there.
    prepared.setAttribute(QNetworkRequest::Http2AllowedAttribute, false);
    prepared.setAttribute(QNetworkRequest::RedirectPolicyAttribute,
                          QNetworkRequest::SameOriginRedirectPolicy);
    prepared.setTransferTimeout(std::chrono::milliseconds(patience).count());
    for (const auto &[name, value] : request.headers)
        prepared.setRawHeader(name, value);

    QNetworkReply *const reply = m_manager.sendCustomRequest(prepared, request.verb, request.body);
    const auto refusals = std::make_shared<QStringList>();
    QObject::connect(reply, &QNetworkReply::sslErrors, reply,
                     [refusals](const QList<QSslError> &errors) {
                         for (const QSslError &error : errors)
                             refusals->append(reason(error));
                     });
    co_await reply;

    Answer answer;
    answer.status = reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
    answer.body = reply->readAll();
    answer.date = httpDate(reply->rawHeader("Date"));
    if (answer.status == 0)
        answer.failure = failureOf(reply->error());
    if (!refusals->isEmpty()) {
        refusals->removeDuplicates();
        answer.isRefusedCertificate = true;
        answer.failure = refusals->join(u" ; "_s);
    }
    reply->deleteLater();
    co_return answer;
}
