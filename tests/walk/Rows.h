#pragma once

#include <QByteArray>
#include <QStringList>

/// Events for a walk.
namespace Rows {

/// The instant at which every walk begins, in milliseconds since 1970.
inline constexpr qint64 start = 1'781'510'400'000; // 15 June 2026, 10:00 in Paris

/// The reply of this variant: some of two dozen events, of other texts, days and owners each time,
/// some months before and after the start. Titles are unique. The last event,
/// which is the first or last of all in time, is there to tell reply `number` from all others.
QByteArray reply(unsigned variant, unsigned number);
QString idOf(const QString &title);
/// A reply without events.
inline constexpr const char *none = "[]";
/// Whether the variant might as well be one.
inline bool isNone(unsigned variant)
{
    return variant % 11 == 3;
}
/// The title of the event that tells the reply from others; empty where there are no events.
QString markOf(const QByteArray &reply);
bool isMark(const QString &title);
/// One event, yet to come, of this owner or of none.
QByteArray one(const QString &title, const QString &owner);
/// The session of the account of this name.
QByteArray session(const QString &user);

} // namespace Rows
