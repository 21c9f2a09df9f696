#pragma once

#include "platform/Instant.h"

#include <QString>
#include <memory>

/// A locale's calendar in a time zone, as a value: every rule about days, months and their texts.
///
/// Copies are cheap and share what is costly to make (calendars, formatters), which is made on
/// first use. A calendar and its copies belong to one thread.
class Calendar {
public:
    /// `locale` as in "fr_FR" or "ar_SA@calendar=islamic"; `zone` as in "Europe/Paris". An unknown
    /// locale falls back on its language and then on the process's own, an unknown zone on GMT.
    Calendar(const QString &locale, const QString &zone);
    /// The user's own: locale from LC_ALL, LC_TIME, LANG in that order (the first that is not
    /// empty), zone of the system. Read afresh at each call, so that a changed zone is seen; as
    /// long as neither changes, all calls of a thread share their formatters.
    static Calendar current();

    /// As they were given, the user's own among them: "fr_FR", "Europe/Paris".
    const QString &localeName() const;
    const QString &zoneName() const;

    /// The first instant of the day that holds `instant`; some days do not begin at 00:00.
    Instant startOfDay(Instant instant) const;
    /// The first instant of the month that holds `instant`, in the locale's own calendar.
    Instant startOfMonth(Instant instant) const;
    /// The first instant after the month that holds `instant`: with startOfMonth, what is needed to
    /// compare month boundaries instead of formatting each date.
    Instant startOfNextMonth(Instant instant) const;
    /// Year, month and day of `day` with hour and minute of `time`. A wall-clock time that the
    /// clock skips runs on; one that occurs twice is the first.
    Instant join(Instant day, Instant time) const;

    /// "Novembre 2026": pattern 'LLLL yyyy', each word capitalised.
    QString monthTitle(Instant instant) const;
    /// "1 oct. 2026 à 11:12": abbreviated date and shortened time, joined by the locale's own 'date
    /// at time'.
    QString moment(Instant instant) const;
    /// Pattern 'yyyy-MM-dd' in the locale's own calendar and digits.
    QString dayText(Instant instant) const;
    /// Pattern 'HH:mm' in the locale's own digits.
    QString timeText(Instant instant) const;
    /// Whether moment() counts the hours of a day by twice twelve, as its locale does.
    bool hasTwelveHours() const;

private:
    struct Shared;
    std::shared_ptr<Shared> m_shared;
};
