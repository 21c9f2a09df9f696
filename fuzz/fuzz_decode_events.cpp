// Any body decodes or fails, and says why; what decodes says the same when it is asked again from a
// body without room behind it.

#include "model/DecodeEvents.h"

#include <cstdint>
#include <cstdlib>
#include <variant>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, size_t size);

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, size_t size)
{
    const auto *const bytes = reinterpret_cast<const char *>(data);
    const auto exact = QByteArray::fromRawData(bytes, static_cast<qsizetype>(size));
    QByteArray roomy = exact;
    roomy.reserve(roomy.size() + 4'096);
    const auto decoded = decodeEvents(exact);
    if (decoded != decodeEvents(roomy))
        std::abort();
    if (const auto *const error = std::get_if<DecodingError>(&decoded)) {
        if (!error->description.startsWith(u"events"))
            std::abort();
        return 0;
    }
    for (const Event &event : std::get<QList<Event>>(decoded)) {
        if (event.starts_at && event.sortDate() != event.starts_at)
            std::abort();
    }
    return 0;
}
