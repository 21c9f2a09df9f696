// What is typed into the form arrives: the service reads each text of it, trimmed and otherwise
// letter by letter, and the list shows it again. The input: the texts of the form, with 0xFE and
// two bytes for a unit of UTF-16, which a field may hold alone.

#include "editor/EventForm.h"
#include "fuzz/Fuzzing.h"
#include "model/DecodeEvents.h"
#include "model/InstantReader.h"
#include "platform/Text.h"
#include "platform/WholeJson.h"
#include "service/Json.h"

#include <algorithm>
#include <cstring>
#include <optional>
#include <string>
#include <string_view>
#include <variant>

using namespace Qt::StringLiterals;

namespace {

QString typed(std::string_view part)
{
    QString text;
    for (;;) {
        const size_t mark = part.find('\xFE');
        text += textFrom(part.substr(0, mark));
        if (mark == std::string_view::npos || mark + 3 > part.size())
            return text;
        text += QChar(static_cast<uchar>(part[mark + 2]), static_cast<uchar>(part[mark + 1]));
        part.remove_prefix(mark + 3);
    }
}

// What of a text goes over the wire: half of a surrogate pair is no character.
QString sent(QString text)
{
    for (qsizetype i = 0; i < text.size(); ++i) {
        if (text[i].isHighSurrogate() && i + 1 < text.size() && text[i + 1].isLowSurrogate())
            ++i;
        else if (text[i].isSurrogate())
            text[i] = QChar::ReplacementCharacter;
    }
    return text;
}

// Four bytes as a moment in the years from 1970 to 2106.
Instant momentFrom(std::string_view part)
{
    quint32 seconds = 0;
    std::memcpy(&seconds, part.data(), std::min(part.size(), sizeof(seconds)));
    return {qint64(seconds) * 1'000};
}

std::optional<QString> trimmedOrNone(const QString &text)
{
    const QString rest = trimmed(text);
    return rest.isEmpty() ? std::nullopt : std::optional(rest);
}

// Whether the record has just this text under `key`, or not even the key; takes it out.
void requireText(nlohmann::json &record, const char *key, const std::optional<QString> &expected)
{
    const auto found = record.find(key);
    require((found != record.end()) == expected.has_value(), "what is empty is left out");
    if (!expected)
        return;
    require(found->is_string() && textOf(found->get<std::string>()) == sent(*expected),
            "each text arrives");
    record.erase(found);
}

void requireReadByService(const EventForm &form, const EventCreatePayload &payload)
{
    auto record = parsedJson(payload.toJson().toStdString());
    require(record.is_object(), "the service reads the payload");
    requireText(record, "id", payload.id);
    requireText(record, "user_id", payload.user_id);
    requireText(record, "titre", trimmed(form.title));
    requireText(record, "description", trimmedOrNone(form.description));
    requireText(record, "lieu", trimmedOrNone(form.lieu));
    requireText(record, "link", trimmedOrNone(form.link));
    requireText(
        record, "organise_par",
        trimmedOrNone(form.organisePar == u"Autre" ? form.organiseParCustom : form.organisePar));
    requireText(record, "contact_email", trimmedOrNone(form.contactEmail));
    requireText(record, "date_texte", payload.date_texte);
    requireText(record, "heure_texte", payload.heure_texte);
    requireText(record, "starts_at", payload.starts_at);
    const auto tags = record.at("tags");
    record.erase("tags");
    require(record.empty(), "nothing else is sent");
    const QStringList sorted = form.selectedTags.sorted();
    require(tags.is_array() && tags.size() == static_cast<size_t>(sorted.size()),
            "all tags arrive");
    for (qsizetype i = 0; i < sorted.size(); ++i) {
        require(textOf(tags.at(static_cast<size_t>(i)).get<std::string>()) == sent(sorted[i]),
                "each tag arrives");
    }
}

Event readBack(const EventCreatePayload &payload)
{
    const auto decoded = decodeEvents('[' + payload.toJson() + ']');
    const auto *const events = std::get_if<QList<Event>>(&decoded);
    require(events && events->size() == 1, "what is saved can be shown");
    return events->first();
}

} // namespace

void fuzz(std::string_view input)
{
    static const Calendar calendar(u"fr_FR"_s, u"Europe/Paris"_s);
    const auto parts = partsOf(input, 11);
    EventForm form;
    form.eventDate = momentFrom(parts[0]);
    form.eventTime = momentFrom(parts[1]);
    form.title = typed(parts[2]);
    form.description = typed(parts[3]);
    form.lieu = typed(parts[4]);
    form.link = typed(parts[5]);
    form.organisePar = typed(parts[6]);
    form.organiseParCustom = typed(parts[7]);
    form.contactEmail = typed(parts[8]);
    // Nobody types a tag: they are the service's own, or offered.
    form.selectedTags = TagSet(textFrom(parts[9]).split(u'\n', Qt::KeepEmptyParts));
    const QString id = typed(parts[10]);

    const EventCreatePayload payload = payloadOf(form, id, std::nullopt, calendar);
    requireReadByService(form, payload);
    const Event event = readBack(payload);
    require(event.starts_at && event.sortDate() == event.starts_at, "what is saved has its place");
    require(calendar.dayText(*event.starts_at) == payload.date_texte, "and its day");

    // Opened again, and saved as it is.
    EventForm again = initialForm(event, std::nullopt, Instant());
    require(again.eventTime == *event.starts_at && again.eventDate == *event.starts_at,
            "an event opens with its day and time");
    again.description = form.description;
    again.lieu = form.lieu;
    again.organisePar = form.organisePar;
    again.organiseParCustom = form.organiseParCustom;
    again.contactEmail = form.contactEmail;
    EventCreatePayload unchanged = payloadOf(again, id, std::nullopt, calendar);
    unchanged.heure_texte = payload.heure_texte; // an hour that the clock skips
    require(readBack(unchanged) == event, "what is saved unchanged stays");
}
