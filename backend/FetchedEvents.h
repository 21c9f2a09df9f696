#pragma once

#include "backend/Reply.h"
#include "model/Event.h"

#include <QList>
#include <QString>

/// The events that `reply` lists. Throws SupabaseError: `invalidResponse`, `httpError`, or
/// `decodingFailed` for a success that lists none, after a copy of its body was left in
/// `diagnosticFile`. May run on any thread.
QList<Event> eventsOf(const Reply &reply, const QString &diagnosticFile);
