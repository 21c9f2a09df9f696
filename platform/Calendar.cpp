#include "platform/Calendar.h"

#include "platform/Text.h"
#include "platform/WallClock.h"

#include <QLocale>
#include <QTimeZone>

#include <unicode/calendar.h>
#include <unicode/dtptngen.h>
#include <unicode/smpdtfmt.h>
#include <unicode/timezone.h>

#include <array>

using namespace Qt::StringLiterals;

// The C++ classes of ICU rather than its C functions: they own themselves.

namespace {

using CalendarPointer = std::unique_ptr<icu::Calendar>;
using FormatPointer = std::unique_ptr<icu::SimpleDateFormat>;

QString qtText(const icu::UnicodeString &text)
{
    return QString(reinterpret_cast<const QChar *>(text.getBuffer()), text.length());
}

// "fr_FR.UTF-8" without its encoding; what follows '@' stays.
QString withoutEncoding(const QString &name)
{
    const qsizetype dot = name.indexOf(u'.');
    if (dot < 0)
        return name;
    const qsizetype at = name.indexOf(u'@', dot);
    return name.first(dot) + (at < 0 ? QString() : name.sliced(at));
}

QString currentLocale()
{
    for (const char *const variable : {"LC_ALL", "LC_TIME", "LANG"}) {
        const QString name = withoutEncoding(qEnvironmentVariable(variable));
        if (name == u"C" || name == u"POSIX")
            return u"en_US_POSIX"_s;
        if (!name.isEmpty())
            return name;
    }
    return QLocale::system().name();
}

QString currentZone()
{
    const QByteArray zone = QTimeZone::systemTimeZoneId();
    return zone.isEmpty() ? u"GMT"_s : QString::fromUtf8(zone);
}

enum Form { MonthForm, MomentForm, DayForm, TimeForm, FormCount };

} // namespace

struct Calendar::Shared {
    Shared(const QString &localeName_, const QString &zoneName_)
        : localeName(localeName_)
        , zoneName(zoneName_)
        , locale(icu::Locale::createCanonical(localeName_.toUtf8().constData()))
        , clock(zoneName_)
    {
    }

    QString localeName;
    QString zoneName;
    icu::Locale locale;
    WallClock clock;

    // Both work on what the clock shows, in GMT.
    CalendarPointer calendar;
    std::array<FormatPointer, FormCount> formats;

    icu::Calendar &at(Instant instant);
    QString text(Form form, Instant instant);

    CalendarPointer makeCalendar() const;
    icu::UnicodeString momentPattern() const;
    icu::UnicodeString pattern(Form form) const;
};

CalendarPointer Calendar::Shared::makeCalendar() const
{
    UErrorCode status = U_ZERO_ERROR;
    CalendarPointer made(
        icu::Calendar::createInstance(icu::TimeZone::getGMT()->clone(), locale, status));
    // Data for every calendar is part of ICU itself; without it nothing can be said about a date.
    Q_ASSERT(U_SUCCESS(status));
    return made;
}

icu::Calendar &Calendar::Shared::at(Instant instant)
{
    if (!calendar)
        calendar = makeCalendar();
    UErrorCode status = U_ZERO_ERROR;
    calendar->setTime(static_cast<UDate>(clock.wallAt(instant).ms), status);
    return *calendar;
}

icu::UnicodeString Calendar::Shared::momentPattern() const
{
    UErrorCode status = U_ZERO_ERROR;
    const std::unique_ptr<icu::DateTimePatternGenerator> generator(
        icu::DateTimePatternGenerator::createInstance(locale, status));
    const icu::UnicodeString date = generator->getBestPattern(u"yMMMd", status);
    const icu::UnicodeString time = generator->getBestPattern(u"jm", status);
    // LONG is the form that says 'at'; MEDIUM joins with a comma. What is quoted in it stays
    // quoted: the result is a date pattern again.
    icu::UnicodeString joined = generator->getDateTimeFormat(UDAT_LONG, status);
    joined.findAndReplace(u"{1}", date);
    joined.findAndReplace(u"{0}", time);
    return joined;
}

icu::UnicodeString Calendar::Shared::pattern(Form form) const
{
    switch (form) {
    case MonthForm:
        return u"LLLL yyyy";
    case MomentForm:
        return momentPattern();
    case DayForm:
        return u"yyyy-MM-dd";
    case TimeForm:
    case FormCount:
        break;
    }
    return u"HH:mm";
}

QString Calendar::Shared::text(Form form, Instant instant)
{
    FormatPointer &format = formats[form];
    if (!format) {
        UErrorCode status = U_ZERO_ERROR;
        format = std::make_unique<icu::SimpleDateFormat>(pattern(form), locale, status);
        Q_ASSERT(U_SUCCESS(status));
        format->adoptCalendar(makeCalendar().release());
    }
    icu::UnicodeString result;
    return qtText(format->format(static_cast<UDate>(clock.wallAt(instant).ms), result));
}

namespace {

constexpr qint64 oneDay = 86'400'000;

// The same in every calendar. What needs no more than this spares the cost of making one; the first
// frame of a window does.
Wall midnight(Wall wall)
{
    const qint64 sinceMidnight = (wall.ms % oneDay + oneDay) % oneDay;
    return {wall.ms - sinceMidnight};
}

Wall wallOf(const icu::Calendar &calendar)
{
    UErrorCode status = U_ZERO_ERROR;
    return {static_cast<qint64>(calendar.getTime(status))};
}

} // namespace

Calendar::Calendar(const QString &locale, const QString &zone)
    : m_shared(std::make_shared<Shared>(locale, zone))
{
}

Calendar Calendar::current()
{
    static thread_local Calendar last{QString(), QString()};
    const QString locale = currentLocale();
    const QString zone = currentZone();
    if (last.m_shared->localeName != locale || last.m_shared->zoneName != zone)
        last = Calendar(locale, zone);
    return last;
}

const QString &Calendar::localeName() const
{
    return m_shared->localeName;
}

const QString &Calendar::zoneName() const
{
    return m_shared->zoneName;
}

Instant Calendar::startOfDay(Instant instant) const
{
    return m_shared->clock.whenLanding(midnight(m_shared->clock.wallAt(instant)));
}

Instant Calendar::startOfMonth(Instant instant) const
{
    icu::Calendar &calendar = m_shared->at(instant);
    calendar.set(UCAL_DAY_OF_MONTH, 1);
    return m_shared->clock.whenLanding(midnight(wallOf(calendar)));
}

Instant Calendar::startOfNextMonth(Instant instant) const
{
    icu::Calendar &calendar = m_shared->at(instant);
    calendar.set(UCAL_DAY_OF_MONTH, 1);
    UErrorCode status = U_ZERO_ERROR;
    calendar.add(UCAL_MONTH, 1, status);
    return m_shared->clock.whenLanding(midnight(wallOf(calendar)));
}

Instant Calendar::join(Instant day, Instant time) const
{
    constexpr qint64 oneMinute = 60'000;
    const Wall start = midnight(m_shared->clock.wallAt(day));
    const Wall shown = m_shared->clock.wallAt(time);
    const qint64 sinceMidnight = shown.ms - midnight(shown).ms;
    return m_shared->clock.whenRunningOn({start.ms + sinceMidnight / oneMinute * oneMinute});
}

QString Calendar::monthTitle(Instant instant) const
{
    return capitalised(m_shared->text(MonthForm, instant));
}

QString Calendar::moment(Instant instant) const
{
    return m_shared->text(MomentForm, instant);
}

QString Calendar::dayText(Instant instant) const
{
    return m_shared->text(DayForm, instant);
}

QString Calendar::timeText(Instant instant) const
{
    return m_shared->text(TimeForm, instant);
}

bool Calendar::hasTwelveHours() const
{
    UErrorCode status = U_ZERO_ERROR;
    const std::unique_ptr<icu::DateTimePatternGenerator> generator(
        icu::DateTimePatternGenerator::createInstance(m_shared->locale, status));
    const icu::UnicodeString time = generator->getBestPattern(u"jm", status);
    return time.indexOf(u'h') >= 0 || time.indexOf(u'K') >= 0;
}
