#pragma once

#include <QString>

#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// A JSON value as it is written, numbers without their value.
struct SlowJson {
    enum class Kind { null, boolean, number, text, list, record };

    Kind kind = Kind::null;
    QString text;
    /// Of a list, or of a record: there each has its key.
    std::vector<SlowJson> values;
    std::vector<QString> keys;

    bool operator==(const SlowJson &) const = default;

    /// The first value under `key`; nullptr when there is none.
    const SlowJson *find(const QString &key) const;
};

/// The grammar of RFC 8259, letter by letter: UTF-8 (RFC 3629) behind at most one byte-order mark,
/// no half of a surrogate pair, nothing nested more than 512 deep.
std::optional<SlowJson> slowJson(std::string_view bytes);

/// The text of `bytes`, where they are UTF-8.
std::optional<QString> slowUtf8(std::string_view bytes);
