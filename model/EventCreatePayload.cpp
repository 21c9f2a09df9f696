#include "model/EventCreatePayload.h"

#include "platform/Gmt.h"
#include "platform/JsonText.h"

#include <QDateTime>

using namespace Qt::StringLiterals;

QString EventCreatePayload::isoDateTime(Instant from, Instant time, const Calendar &calendar)
{
    const QDateTime joined = QDateTime::fromMSecsSinceEpoch(calendar.join(from, time).ms, inGmt);
    // Not Qt's own ISO form, which gives nothing for years of five digits.
    return u"%1-%2"_s.arg(joined.date().year(), 4, 10, QLatin1Char('0'))
        .arg(joined.toString(u"MM-dd'T'HH:mm:ss'Z'"));
}

QByteArray EventCreatePayload::toJson() const
{
    JsonObjectWriter writer;
    writer.add("id", id);
    writer.add("user_id", user_id);
    writer.add("titre", titre);
    writer.add("description", description);
    writer.add("tags", tags);
    writer.add("lieu", lieu);
    writer.add("link", link);
    writer.add("organise_par", organise_par);
    writer.add("contact_email", contact_email);
    writer.add("date_texte", date_texte);
    writer.add("heure_texte", heure_texte);
    writer.add("starts_at", starts_at);
    return writer.object();
}
