#include "check/PublicKey.h"

#include <QByteArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QList>

using namespace Qt::StringLiterals;

bool isSecretKey(QStringView key)
{
    if (key.startsWith(u"sb_secret_"))
        return true;
    const QList<QStringView> pieces = key.split(u'.');
    if (pieces.size() != 3)
        return false;
    const QByteArray claims =
        QByteArray::fromBase64(pieces[1].toLatin1(), QByteArray::Base64UrlEncoding);
    return QJsonDocument::fromJson(claims).object().value(u"role").toString() == u"service_role";
}
