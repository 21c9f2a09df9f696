#pragma once

#include "model/Event.h"
#include "platform/DecodingError.h"

#include <QByteArray>
#include <QList>
#include <variant>

/// Reads the events reply: a JSON array of rows, whole or not at all. The body is validated to its
/// end, also where nobody reads it; an error names the place of the first fault by rows and then by
/// fields in the order of the record. Repeated texts share storage. A pure function that may run on
/// any thread.
std::variant<QList<Event>, DecodingError> decodeEvents(const QByteArray &body);
