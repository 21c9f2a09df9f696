// A reply of events is read as the slow reader reads it, or fails where that one fails and says
// why; what was read, written again, is read as the same.

#include "fuzz/Fuzzing.h"
#include "fuzz/SlowEvents.h"
#include "model/DecodeEvents.h"

#include <string_view>
#include <variant>

void fuzz(std::string_view input)
{
    const QByteArray exact = bytesFrom(input);
    const auto decoded = decodeEvents(exact);
    const auto *const events = std::get_if<QList<Event>>(&decoded);
    const auto expected = slowEvents(slowJson(input));
    require(expected.has_value() == (events != nullptr), "the same bodies are lists of events");

    QByteArray roomy = exact;
    roomy.reserve(roomy.size() + 4'096);
    require(decodeEvents(roomy) == decoded, "room behind the body changes nothing");

    if (!events) {
        require(std::get<DecodingError>(decoded).description.startsWith(u"events"),
                "a failure says where");
        return;
    }
    require(*events == *expected, "the same events are read");
    if (const auto again = rewritten(*events))
        require(decodeEvents(*again) == decoded, "what is written again reads the same");
}
