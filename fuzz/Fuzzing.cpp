#include "fuzz/Fuzzing.h"

#include "platform/WholeJson.h"

#include <cstdint>
#include <cstdio>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, size_t size);

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, size_t size)
{
    fuzz({reinterpret_cast<const char *>(data), size});
    return 0;
}

void require(bool holds, const char *promise)
{
    if (holds)
        return;
    std::fprintf(stderr, "broken: %s\n", promise);
    std::abort();
}

std::vector<std::string_view> partsOf(std::string_view input, size_t count)
{
    std::vector<std::string_view> parts;
    while (parts.size() + 1 < count) {
        const size_t end = input.find('\xFF');
        parts.push_back(input.substr(0, end));
        input.remove_prefix(end == std::string_view::npos ? input.size() : end + 1);
    }
    parts.push_back(input);
    return parts;
}

QString textFrom(std::string_view part)
{
    return textOf(part);
}

QByteArray bytesFrom(std::string_view part)
{
    return QByteArray::fromRawData(part.data(), static_cast<qsizetype>(part.size()));
}
