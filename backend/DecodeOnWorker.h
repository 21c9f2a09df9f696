#pragma once

#include "backend/OnWorker.h"
#include "model/Event.h"

#include <QByteArray>

/// The events that `body` lists, read on the worker's thread, where the body is freed too. Throws
/// SupabaseError `decodingFailed` when it lists none, after a copy of it was left in
/// `diagnosticFile`.
QCoro::Task<QList<Event>> decodeOnWorker(Worker &worker, WaitingRoom &room, QByteArray body,
                                         QString diagnosticFile);
