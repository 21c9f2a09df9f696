#pragma once

#include "model/Event.h"
#include "platform/Calendar.h"

#include <optional>

/// Whether an optional text has something to show: it is there and not empty. Blanks count.
bool isPresent(const std::optional<QString> &text);

/// When the event takes place, as it is shown: `date_texte` as stored, else `starts_at` on the
/// calendar's clock, else nothing.
std::optional<QString> shownDate(const Event &event, const Calendar &calendar);

/// What is there of the date as it is shown, time and place, in a line for screen readers:
/// "2026-11-14, 14:30, Salle Vaudrelle".
QString whenAndWhere(const std::optional<QString> &date, const Event &event);
