#pragma once

#include <QByteArray>

/// An events reply of so many rows as the service writes them: six-digit fractions, ids and users
/// as UUIDs, French texts that repeat as a village's do, and ids and descriptions that do not. They
/// take place all over that year.
QByteArray eventsReply(int rows, int year = 2026);
