// Any text is an instant or none, a day is an instant too, and both stay within the years 0 to
// 9999.

#include "model/InstantReader.h"

#include <QString>

#include <cstdint>
#include <cstdlib>
#include <string_view>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, size_t size);

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, size_t size)
{
    const std::string_view text(reinterpret_cast<const char *>(data), size);
    const auto instant = readInstant(text);
    const auto day = readDay(QString::fromLatin1(text.data(), static_cast<qsizetype>(text.size())));
    if (day && instant != day)
        std::abort();
    // With the farthest offset and the days that run on.
    constexpr qint64 first = -62'167'219'200'000 - 86'400'000;
    constexpr qint64 last = 253'402'300'800'000 + 3 * qint64(86'400'000);
    if (instant && (instant->ms < first || instant->ms > last))
        std::abort();
    return 0;
}
