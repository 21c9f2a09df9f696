#pragma once

#include <QByteArray>
#include <QString>

#include <simdjson.h>

#include <string_view>

/// Parses `whole` as one JSON text of RFC 8259 and validates it to its end, also where nobody reads
/// it. A byte-order mark of UTF-8 is skipped. Numbers of any size are valid, but only their being
/// numbers is kept of them when one is beyond the range of a double or of 64 bits. Arrays and
/// objects may be nested 512 deep, as deep as Foundation reads them.
///
/// The element lives as long as `parser` and its last call.
simdjson::error_code parseWhole(simdjson::dom::parser &parser, const QByteArray &whole,
                                simdjson::dom::element &root);

/// Valid UTF-8 as text; a byte-order mark is a letter like others.
QString textOf(std::string_view utf8);

/// For people: "expected a string but found null".
QString mismatch(QStringView wanted, simdjson::dom::element found);
