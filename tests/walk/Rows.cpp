#include "walk/Rows.h"

#include <QDateTime>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>
#include <random>

using namespace Qt::StringLiterals;

namespace {

constexpr qint64 day = 86'400'000; // ms
constexpr int beyond = 2000; // days; further away than any walk goes on
const auto markName = u"Liste "_s;

QByteArray written(const QJsonArray &rows)
{
    return QJsonDocument(rows).toJson(QJsonDocument::Compact);
}

QString timeOf(qint64 ms)
{
    return QDateTime::fromMSecsSinceEpoch(ms).toUTC().toString(Qt::ISODate);
}

} // namespace

QByteArray Rows::reply(unsigned variant, unsigned number)
{
    constexpr int most = 24;
    std::mt19937 random(variant);
    const auto upTo = [&random](unsigned limit) { return int(random() % limit); };
    QJsonArray rows;
    for (int i = 0; i < most; ++i) {
        const bool isThere = upTo(4) > 0;
        QJsonObject event;
        const QString title = u"Fête %1"_s.arg(i, 2, 10, QLatin1Char('0'));
        event[u"id"_s] = idOf(title);
        event[u"titre"_s] = title;
        event[u"starts_at"_s] = timeOf(start + (i - most / 2) * 4 * day + upTo(3) * day);
        if (const int words = upTo(5) * 14; words > 0)
            event[u"description"_s] = u"Chacun apporte un bol. "_s.repeated(words / 4);
        if (upTo(2) == 0)
            event[u"lieu"_s] = u"Salle Vaudrelle"_s;
        if (upTo(2) == 0)
            event[u"tags"_s] = QJsonArray{u"Repas"_s, u"Sport"_s};
        if (upTo(3) == 0)
            event[u"link"_s] = u"https://exemple.fr"_s;
        if (const int owner = upTo(4); owner > 0)
            event[u"user_id"_s] = u"u%1"_s.arg(std::min(owner, 2));
        if (isThere)
            rows.append(event);
    }
    const QString mark = markName + QString::number(number);
    const qint64 when = start + (variant % 2 == 0 ? beyond : -beyond) * day;
    rows.append(
        QJsonObject{{u"id"_s, idOf(mark)}, {u"titre"_s, mark}, {u"starts_at"_s, timeOf(when)}});
    return written(rows);
}

QString Rows::idOf(const QString &title)
{
    // As it may stand in an address.
    return QString(title).replace(u' ', u'-').replace(u'ê', u'e');
}

QString Rows::markOf(const QByteArray &reply)
{
    const QJsonArray rows = QJsonDocument::fromJson(reply).array();
    return rows.isEmpty() ? QString() : rows.last().toObject().value(u"titre"_s).toString();
}

bool Rows::isMark(const QString &title)
{
    return title.startsWith(markName);
}

QByteArray Rows::one(const QString &title, const QString &owner)
{
    QJsonObject event{{u"id"_s, idOf(title)},
                      {u"titre"_s, title},
                      {u"starts_at"_s, timeOf(start + beyond * day)}};
    if (!owner.isEmpty())
        event[u"user_id"_s] = owner;
    return written({event});
}

QByteArray Rows::session(const QString &user)
{
    const QJsonObject account{{u"id"_s, user}, {u"email"_s, user + u"@exemple.fr"_s}};
    return QJsonDocument(QJsonObject{{u"access_token"_s, u"jeton"_s}, {u"user"_s, account}})
        .toJson(QJsonDocument::Compact);
}
