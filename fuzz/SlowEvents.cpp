#include "fuzz/SlowEvents.h"

#include "fuzz/SlowInstant.h"
#include "platform/JsonText.h"

#include <optional>

using namespace Qt::StringLiterals;

namespace {

using Kind = SlowJson::Kind;

// Reads what is there under `key` by `read`; whether that was right.
template <typename Value, typename Read>
bool readOptional(const SlowJson &row, const QString &key, std::optional<Value> &into, Read read)
{
    const SlowJson *const value = row.find(key);
    if (!value || value->kind == Kind::null)
        return true;
    into.emplace();
    return read(*value, *into);
}

bool readText(const SlowJson &value, QString &into)
{
    into = value.text;
    return value.kind == Kind::text;
}

bool readTexts(const SlowJson &value, QStringList &into)
{
    for (const SlowJson &text : value.values) {
        if (text.kind != Kind::text)
            return false;
        into.append(text.text);
    }
    return value.kind == Kind::list;
}

bool readInstant(const SlowJson &value, Instant &into)
{
    const auto instant = slowInstant(value.text.toStdString());
    into = instant.value_or(Instant());
    return value.kind == Kind::text && instant;
}

bool readRequired(const SlowJson &row, const QString &key, QString &into)
{
    const SlowJson *const value = row.find(key);
    return value && readText(*value, into);
}

bool readRow(const SlowJson &row, Event &event)
{
    return row.kind == Kind::record && readRequired(row, u"id"_s, event.id)
        && readRequired(row, u"titre"_s, event.titre)
        && readOptional(row, u"description"_s, event.description, readText)
        && readOptional(row, u"tags"_s, event.tags, readTexts)
        && readOptional(row, u"lieu"_s, event.lieu, readText)
        && readOptional(row, u"link"_s, event.link, readText)
        && readOptional(row, u"organise_par"_s, event.organise_par, readText)
        && readOptional(row, u"status"_s, event.status, readText)
        && readOptional(row, u"contact_email"_s, event.contact_email, readText)
        && readOptional(row, u"user_id"_s, event.user_id, readText)
        && readOptional(row, u"ts"_s, event.ts, readInstant)
        && readOptional(row, u"date_texte"_s, event.date_texte, readText)
        && readOptional(row, u"heure_texte"_s, event.heure_texte, readText)
        && readOptional(row, u"starts_at"_s, event.starts_at, readInstant);
}

// Whether it can be written.
bool add(JsonObjectWriter &row, const char *key, const std::optional<Instant> &instant)
{
    if (!instant)
        return true;
    const auto text = written(*instant);
    if (text)
        row.add(key, QString::fromStdString(*text));
    return text.has_value();
}

} // namespace

std::optional<QList<Event>> slowEvents(const std::optional<SlowJson> &body)
{
    if (!body || body->kind != Kind::list)
        return std::nullopt;
    QList<Event> events;
    for (const SlowJson &row : body->values) {
        if (!readRow(row, events.emplaceBack()))
            return std::nullopt;
    }
    return events;
}

std::optional<QByteArray> rewritten(const QList<Event> &events)
{
    QByteArray body;
    for (const Event &event : events) {
        JsonObjectWriter row;
        row.add("id", event.id);
        row.add("titre", event.titre);
        row.add("description", event.description);
        row.add("tags", event.tags);
        row.add("lieu", event.lieu);
        row.add("link", event.link);
        row.add("organise_par", event.organise_par);
        row.add("status", event.status);
        row.add("contact_email", event.contact_email);
        row.add("user_id", event.user_id);
        if (!add(row, "ts", event.ts))
            return std::nullopt;
        row.add("date_texte", event.date_texte);
        row.add("heure_texte", event.heure_texte);
        if (!add(row, "starts_at", event.starts_at))
            return std::nullopt;
        body += (body.isEmpty() ? "" : ",") + row.object();
    }
    return '[' + body + ']';
}
