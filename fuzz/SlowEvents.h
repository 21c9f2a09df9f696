#pragma once

#include "fuzz/SlowJson.h"
#include "model/Event.h"

#include <QByteArray>

#include <optional>

/// The events of a body, as model/DecodeEvents.h says that they are read; none where one is not.
std::optional<QList<Event>> slowEvents(const std::optional<SlowJson> &body);

/// A body that lists these events, fields that are absent left out; none when one has an instant
/// that four digits of a year cannot write.
std::optional<QByteArray> rewritten(const QList<Event> &events);
