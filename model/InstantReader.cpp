#include "model/InstantReader.h"

#include <chrono>

namespace {

constexpr qint64 secondsOfDay = 86'400;
// No zone is farther from GMT, and the platform's own zones end here.
constexpr int farthestOffset = 18 * 3'600;

// Takes a text apart from its front; a step that does not fit says so.
template <typename Char>
class Reader {
public:
    Reader(const Char *begin, const Char *end)
        : m_next(begin)
        , m_end(end)
    {
    }

    bool isDone() const { return m_next == m_end; }

    bool take(char wanted)
    {
        if (isDone() || *m_next != static_cast<Char>(wanted))
            return false;
        ++m_next;
        return true;
    }

    // `wanted` is in upper case and is met in either; what begins like it only stays where it is.
    bool takeLetters(std::string_view wanted)
    {
        if (static_cast<size_t>(m_end - m_next) < wanted.size())
            return false;
        for (size_t i = 0; i < wanted.size(); ++i) {
            if ((m_next[i] & ~0x20) != wanted[i])
                return false;
        }
        m_next += wanted.size();
        return true;
    }

    bool isAtDigit() const { return !isDone() && digitAt(m_next) >= 0; }

    // Exactly `count` digits, or -1.
    template <int count>
    int number()
    {
        if (m_end - m_next < count)
            return -1;
        int value = 0;
        for (int i = 0; i < count; ++i) {
            const int digit = digitAt(m_next + i);
            if (digit < 0)
                return -1;
            value = value * 10 + digit;
        }
        m_next += count;
        return value;
    }

    int digit() { return number<1>(); }

private:
    static int digitAt(const Char *at)
    {
        return *at >= static_cast<Char>('0') && *at <= static_cast<Char>('9')
            ? static_cast<int>(*at - static_cast<Char>('0'))
            : -1;
    }

    const Char *m_next;
    const Char *m_end;
};

// Days since 1970-01-01. A day that its month does not have is one of the next.
qint64 daysSince1970(int year, int month, int day)
{
    namespace chrono = std::chrono;
    return chrono::sys_days(chrono::year(year) / month / day).time_since_epoch().count();
}

template <typename Char>
std::optional<qint64> readDays(Reader<Char> &reader)
{
    const int year = reader.template number<4>();
    if (year < 0 || !reader.take('-'))
        return std::nullopt;
    const int month = reader.template number<2>();
    if (month < 1 || month > 12 || !reader.take('-'))
        return std::nullopt;
    const int day = reader.template number<2>();
    if (day < 1 || day > 31)
        return std::nullopt;
    return daysSince1970(year, month, day);
}

// Seconds since midnight.
std::optional<int> readClock(Reader<char> &reader)
{
    const int hour = reader.number<2>();
    if (hour < 0 || hour > 24 || !reader.take(':'))
        return std::nullopt;
    const int minute = reader.number<2>();
    if (minute < 0 || minute > 59 || !reader.take(':'))
        return std::nullopt;
    const int second = reader.number<2>();
    if (second < 0 || second > 60)
        return std::nullopt;
    return (hour * 60 + minute) * 60 + second;
}

// Milliseconds; what is finer is cut.
std::optional<int> readFraction(Reader<char> &reader)
{
    if (!reader.take('.'))
        return 0;
    if (!reader.isAtDigit())
        return std::nullopt;
    int ms = 0;
    for (int weight = 100; reader.isAtDigit(); weight /= 10)
        ms += reader.digit() * weight;
    return ms;
}

// Seconds east of GMT.
std::optional<int> readOffset(Reader<char> &reader)
{
    if (reader.takeLetters("Z"))
        return 0;
    const bool isNamed = reader.takeLetters("GMT") || reader.takeLetters("UTC");
    if (isNamed && reader.isDone())
        return 0;
    const bool isWest = reader.take('-');
    if (!isWest && !reader.take('+'))
        return std::nullopt;

    const int hour = reader.number<2>();
    if (hour < 0)
        return std::nullopt;
    int minute = 0;
    int second = 0;
    if (reader.take(':') || !reader.isDone()) {
        minute = reader.number<2>();
        if (reader.take(':'))
            second = reader.number<2>();
    }
    if (minute < 0 || minute > 59 || second < 0 || second > 59)
        return std::nullopt;
    const int offset = (hour * 60 + minute) * 60 + second;
    if (offset > farthestOffset)
        return std::nullopt;
    return isWest ? -offset : offset;
}

} // namespace

std::optional<Instant> readInstant(std::string_view text)
{
    Reader<char> reader(text.data(), text.data() + text.size());
    const auto days = readDays(reader);
    if (!days)
        return std::nullopt;
    if (reader.isDone())
        return Instant{*days * secondsOfDay * 1'000};
    if (!reader.take('T'))
        return std::nullopt;
    const auto clock = readClock(reader);
    if (!clock)
        return std::nullopt;
    const auto ms = readFraction(reader);
    if (!ms)
        return std::nullopt;
    const auto offset = readOffset(reader);
    if (!offset || !reader.isDone())
        return std::nullopt;
    return Instant{(*days * secondsOfDay + *clock - *offset) * 1'000 + *ms};
}

std::optional<Instant> readDay(QStringView text)
{
    Reader<char16_t> reader(text.utf16(), text.utf16() + text.size());
    const auto days = readDays(reader);
    if (!days || !reader.isDone())
        return std::nullopt;
    return Instant{*days * secondsOfDay * 1'000};
}
