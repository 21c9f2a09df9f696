#include "model/DecodeEvents.h"

#include "model/EventFields.h"
#include "model/InstantReader.h"
#include "model/TextPool.h"
#include "platform/WholeJson.h"

#include <array>
#include <optional>
#include <string_view>

using namespace Qt::StringLiterals;

namespace {

namespace dom = simdjson::dom;

// The service writes the keys in the order it was asked for them: mostly the one behind the last.
int fieldOf(std::string_view key, int likely)
{
    if (likely < FieldCount && sameBytes(fieldKeys[static_cast<size_t>(likely)], key))
        return likely;
    for (int field = 0; field < FieldCount; ++field) {
        if (fieldKeys[static_cast<size_t>(field)] == key)
            return field;
    }
    return FieldCount;
}

// Reads rows one by one; what repeats from row to row is kept only once.
class RowReader {
public:
    // Whether `row` is an event; else `fault` says where in the row and why not.
    bool read(dom::element row, Event &event);

    const QString &fault() const { return m_fault; }

private:
    bool collect(dom::element row);

    bool text(EventField field, QString &into);
    bool text(EventField field, std::optional<QString> &into);
    bool tags(std::optional<QStringList> &into);
    bool instant(EventField field, std::optional<Instant> &into);

    bool has(EventField field) const { return m_isFound[field] && !m_values[field].is_null(); }
    bool fails(EventField field, const QString &why) { return fails(QString(), field, why); }
    bool fails(const QString &place, EventField field, const QString &why);

    // The row's values by field: of a doubled key the first.
    std::array<dom::element, FieldCount> m_values;
    std::array<bool, FieldCount> m_isFound{};

    std::array<TextPool, FieldCount> m_texts;
    TextListPool m_tags;
    QString m_fault;
};

bool RowReader::fails(const QString &place, EventField field, const QString &why)
{
    m_fault = u'.'
        + QString::fromLatin1(fieldKeys[field].data(),
                              static_cast<qsizetype>(fieldKeys[field].size()))
        + place + u": "_s + why;
    return false;
}

bool RowReader::collect(dom::element row)
{
    dom::object object;
    if (row.get(object) != simdjson::SUCCESS) {
        m_fault = u": "_s + mismatch(u"an object", row);
        return false;
    }
    m_isFound.fill(false);
    int field = -1;
    for (const auto &[key, value] : object) {
        field = fieldOf(key, field + 1);
        if (field == FieldCount || m_isFound[static_cast<size_t>(field)])
            continue;
        m_isFound[static_cast<size_t>(field)] = true;
        m_values[static_cast<size_t>(field)] = value;
    }
    return true;
}

bool RowReader::text(EventField field, QString &into)
{
    if (!m_isFound[field])
        return fails(field, u"expected a string but the key is missing"_s);
    std::string_view utf8;
    if (m_values[field].get(utf8) != simdjson::SUCCESS)
        return fails(field, mismatch(u"a string", m_values[field]));
    into = field == Id ? textOf(utf8) : m_texts[field].take(utf8);
    return true;
}

bool RowReader::text(EventField field, std::optional<QString> &into)
{
    return !has(field) || text(field, into.emplace());
}

bool RowReader::tags(std::optional<QStringList> &into)
{
    if (!has(Tags))
        return true;
    dom::array list;
    if (m_values[Tags].get(list) != simdjson::SUCCESS)
        return fails(Tags, mismatch(u"an array", m_values[Tags]));
    qsizetype place = 0;
    for (const dom::element tag : list) {
        std::string_view utf8;
        if (tag.get(utf8) != simdjson::SUCCESS)
            return fails(u"[%1]"_s.arg(place), Tags, mismatch(u"a string", tag));
        m_tags.add(utf8);
        ++place;
    }
    into = m_tags.take();
    return true;
}

bool RowReader::instant(EventField field, std::optional<Instant> &into)
{
    if (!has(field))
        return true;
    std::string_view utf8;
    if (m_values[field].get(utf8) != simdjson::SUCCESS)
        return fails(field, mismatch(u"a string", m_values[field]));
    into = readInstant(utf8);
    return into || fails(field, u"Invalid date: "_s + textOf(utf8));
}

bool RowReader::read(dom::element row, Event &event)
{
    return collect(row) //
        && text(Id, event.id) //
        && text(Titre, event.titre) //
        && text(Description, event.description) //
        && tags(event.tags) //
        && text(Lieu, event.lieu) //
        && text(Link, event.link) //
        && text(OrganisePar, event.organise_par) //
        && text(Status, event.status) //
        && text(ContactEmail, event.contact_email) //
        && text(UserId, event.user_id) //
        && instant(Ts, event.ts) //
        && text(DateTexte, event.date_texte) //
        && text(HeureTexte, event.heure_texte) //
        && instant(StartsAt, event.starts_at);
}

} // namespace

std::variant<QList<Event>, DecodingError> decodeEvents(const QByteArray &body)
{
    dom::parser parser;
    dom::element root;
    if (const auto error = parseWhole(parser, body, root))
        return DecodingError{u"events: not valid JSON: "_s
                             + QString::fromUtf8(simdjson::error_message(error))};
    dom::array rows;
    if (root.get(rows) != simdjson::SUCCESS)
        return DecodingError{u"events: "_s + mismatch(u"an array", root)};

    QList<Event> events;
    events.reserve(static_cast<qsizetype>(rows.size()));
    RowReader reader;
    for (const dom::element row : rows) {
        if (!reader.read(row, events.emplaceBack()))
            return DecodingError{u"events[%1]"_s.arg(events.size() - 1) + reader.fault()};
    }
    return events;
}
