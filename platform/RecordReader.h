#pragma once

#include "platform/DecodingError.h"
#include "platform/WholeJson.h"

#include <simdjson.h>

#include <optional>
#include <string_view>
#include <variant>

using namespace Qt::StringLiterals;

/// Reads the members of a JSON object and notes the first that is not as expected. A member that is
/// not as expected reads as absent.
class RecordReader {
public:
    /// `name` is the record's place in a fault, as in "AuthResponse.user".
    RecordReader(simdjson::dom::element record, const QString &name,
                 std::optional<DecodingError> &fault);

    /// What must be there.
    QString text(std::string_view key);
    /// What may be missing or null.
    std::optional<QString> optionalText(std::string_view key);
    std::optional<RecordReader> optionalRecord(std::string_view key);

private:
    QString placeOf(std::string_view key) const;
    void note(const QString &fault);
    std::optional<simdjson::dom::element> find(std::string_view key) const;
    QString textAt(std::string_view key, simdjson::dom::element value);

    std::optional<simdjson::dom::object> m_members;
    QString m_name;
    std::optional<DecodingError> &m_fault;
};

/// The record of a JSON body, whole or not at all. A missing key and a null are absent alike,
/// unknown keys are ignored, a value of the wrong type or a body that is no valid JSON fails the
/// record; of a doubled key the first counts. May be called on any thread.
template <typename Record>
std::variant<Record, DecodingError> decodeRecord(const QByteArray &body, const QString &name,
                                                 Record (*read)(RecordReader))
{
    simdjson::dom::parser parser;
    simdjson::dom::element root;
    if (const auto error = parseWhole(parser, body, root)) {
        return DecodingError{name + u": not valid JSON: "_s
                             + QString::fromUtf8(simdjson::error_message(error))};
    }
    std::optional<DecodingError> fault;
    Record record = read(RecordReader(root, name, fault));
    if (fault)
        return *fault;
    return record;
}
