#include "fuzz/SlowInstant.h"

#include <array>
#include <cstdio>

namespace {

constexpr qint64 msOfDay = qint64(24) * 60 * 60 * 1'000;

bool isDigit(char c)
{
    return c >= '0' && c <= '9';
}

// Whether `text` has the form of `pattern`, in which 0 stands for any digit.
bool fits(std::string_view text, std::string_view pattern)
{
    if (text.size() != pattern.size())
        return false;
    for (size_t i = 0; i < text.size(); ++i) {
        if (pattern[i] == '0' ? !isDigit(text[i]) : text[i] != pattern[i])
            return false;
    }
    return true;
}

int numberAt(std::string_view text, size_t at, size_t digits)
{
    return std::stoi(std::string(text.substr(at, digits)));
}

bool isLeapYear(int year)
{
    return (year % 4 == 0 && year % 100 != 0) || year % 400 == 0;
}

int daysOf(int year, int month)
{
    constexpr std::array days{31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    return month == 2 && isLeapYear(year) ? 29 : days.at(static_cast<size_t>(month - 1));
}

// From the first day of the year 0 to the first of this one.
const std::array<qint64, 10'001> &daysBeforeYears()
{
    static const auto all = [] {
        std::array<qint64, 10'001> before{};
        for (size_t year = 1; year < before.size(); ++year)
            before.at(year) =
                before.at(year - 1) + (isLeapYear(static_cast<int>(year) - 1) ? 366 : 365);
        return before;
    }();
    return all;
}

qint64 daysFrom1970(int year, int month, int day)
{
    qint64 days = daysBeforeYears().at(static_cast<size_t>(year)) - daysBeforeYears().at(1970);
    for (int before = 1; before < month; ++before)
        days += daysOf(year, before);
    return days + day - 1;
}

std::optional<qint64> offsetOf(std::string zone)
{
    for (char &c : zone) {
        if (c >= 'a' && c <= 'z')
            c = static_cast<char>(c - 'a' + 'A');
    }
    if (zone == "Z" || zone == "GMT" || zone == "UTC")
        return 0;
    if (zone.starts_with("GMT") || zone.starts_with("UTC"))
        zone.erase(0, 3);
    if (zone.empty() || (zone[0] != '+' && zone[0] != '-'))
        return std::nullopt;
    const qint64 sign = zone[0] == '-' ? -1 : 1;
    zone.erase(0, 1);

    int minutes = 0;
    int seconds = 0;
    if (fits(zone, "00")) {
        // Hours alone.
    } else if (fits(zone, "0000")) {
        minutes = numberAt(zone, 2, 2);
    } else if (fits(zone, "00:00")) {
        minutes = numberAt(zone, 3, 2);
    } else if (fits(zone, "0000:00")) {
        minutes = numberAt(zone, 2, 2);
        seconds = numberAt(zone, 5, 2);
    } else if (fits(zone, "00:00:00")) {
        minutes = numberAt(zone, 3, 2);
        seconds = numberAt(zone, 6, 2);
    } else {
        return std::nullopt;
    }
    const qint64 all = (qint64(numberAt(zone, 0, 2)) * 60 + minutes) * 60 + seconds;
    if (minutes > 59 || seconds > 59 || all > qint64(18) * 60 * 60)
        return std::nullopt;
    return sign * all * 1'000;
}

} // namespace

std::optional<Instant> slowDay(std::string_view text)
{
    if (!fits(text, "0000-00-00"))
        return std::nullopt;
    const int month = numberAt(text, 5, 2);
    const int day = numberAt(text, 8, 2);
    if (month < 1 || month > 12 || day < 1 || day > 31)
        return std::nullopt;
    return Instant{daysFrom1970(numberAt(text, 0, 4), month, day) * msOfDay};
}

std::optional<Instant> slowInstant(std::string_view text)
{
    const auto day = slowDay(text.substr(0, 10));
    if (!day || text.size() <= 10)
        return day;
    text.remove_prefix(10);

    if (!fits(text.substr(0, 9), "T00:00:00"))
        return std::nullopt;
    const int hour = numberAt(text, 1, 2);
    const int minute = numberAt(text, 4, 2);
    const int second = numberAt(text, 7, 2);
    if (hour > 24 || minute > 59 || second > 60)
        return std::nullopt;
    text.remove_prefix(9);

    std::string fraction;
    if (text.starts_with('.')) {
        text.remove_prefix(1);
        while (!text.empty() && isDigit(text.front())) {
            fraction += text.front();
            text.remove_prefix(1);
        }
        if (fraction.empty())
            return std::nullopt;
    }
    const auto offset = offsetOf(std::string(text));
    if (!offset)
        return std::nullopt;
    const int ms = numberAt(fraction + "000", 0, 3);
    const qint64 clock = (qint64(hour) * 60 + minute) * 60 + second;
    return Instant{day->ms + clock * 1'000 + ms - *offset};
}

std::optional<std::string> written(Instant instant)
{
    const qint64 sinceZero = instant.ms + daysBeforeYears().at(1970) * msOfDay;
    if (sinceZero < 0 || sinceZero >= daysBeforeYears().at(10'000) * msOfDay)
        return std::nullopt;
    qint64 days = sinceZero / msOfDay;
    const qint64 ms = sinceZero % msOfDay;
    int year = static_cast<int>(days / 366);
    while (daysBeforeYears().at(static_cast<size_t>(year) + 1) <= days)
        ++year;
    days -= daysBeforeYears().at(static_cast<size_t>(year));
    int month = 1;
    for (; days >= daysOf(year, month); ++month)
        days -= daysOf(year, month);

    char text[32];
    std::snprintf(text, sizeof(text), "%04d-%02d-%02dT%02d:%02d:%02d.%03dZ", year, month,
                  static_cast<int>(days) + 1, static_cast<int>(ms / 3'600'000),
                  static_cast<int>(ms / 60'000 % 60), static_cast<int>(ms / 1'000 % 60),
                  static_cast<int>(ms % 1'000));
    return text;
}
