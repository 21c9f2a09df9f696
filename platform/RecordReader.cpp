#include "platform/RecordReader.h"

using namespace Qt::StringLiterals;

RecordReader::RecordReader(simdjson::dom::element record, const QString &name,
                           std::optional<DecodingError> &fault)
    : m_name(name)
    , m_fault(fault)
{
    simdjson::dom::object members;
    if (record.get(members) == simdjson::SUCCESS)
        m_members = members;
    else
        note(m_name + u": "_s + mismatch(u"an object", record));
}

QString RecordReader::text(std::string_view key)
{
    if (const auto value = find(key))
        return textAt(key, *value);
    note(placeOf(key) + u": expected a string but the key is missing"_s);
    return {};
}

std::optional<QString> RecordReader::optionalText(std::string_view key)
{
    const auto value = find(key);
    if (!value || value->is_null())
        return std::nullopt;
    return textAt(key, *value);
}

std::optional<RecordReader> RecordReader::optionalRecord(std::string_view key)
{
    const auto value = find(key);
    if (!value || value->is_null())
        return std::nullopt;
    return RecordReader(*value, placeOf(key), m_fault);
}

QString RecordReader::placeOf(std::string_view key) const
{
    return m_name + u'.' + textOf(key);
}

void RecordReader::note(const QString &fault)
{
    if (!m_fault)
        m_fault = DecodingError{fault};
}

std::optional<simdjson::dom::element> RecordReader::find(std::string_view key) const
{
    simdjson::dom::element value;
    if (!m_members || m_members->at_key(key).get(value) != simdjson::SUCCESS)
        return std::nullopt;
    return value;
}

QString RecordReader::textAt(std::string_view key, simdjson::dom::element value)
{
    std::string_view utf8;
    if (value.get(utf8) == simdjson::SUCCESS)
        return textOf(utf8);
    note(placeOf(key) + u": "_s + mismatch(u"a string", value));
    return {};
}
