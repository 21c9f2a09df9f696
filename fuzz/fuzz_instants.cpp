// A text is the instant, and the day, that the slow reader takes it for.

#include "fuzz/Fuzzing.h"
#include "fuzz/SlowInstant.h"
#include "model/InstantReader.h"

#include <algorithm>
#include <optional>
#include <string_view>

void fuzz(std::string_view input)
{
    const auto instant = readInstant(input);
    require(instant == slowInstant(input), "the same texts are the same instants");
    if (const auto text = instant ? written(*instant) : std::nullopt)
        require(readInstant(*text) == instant, "what is written again reads the same");

    const QString text = textFrom(input);
    const bool isAscii = std::ranges::all_of(text, [](QChar c) { return c.unicode() < 0x80; });
    require(readDay(text) == (isAscii ? slowDay(input) : std::nullopt), "the same texts are days");
}
