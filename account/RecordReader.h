#pragma once

#include "platform/DecodingError.h"

#include <simdjson.h>

#include <optional>
#include <string_view>

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
