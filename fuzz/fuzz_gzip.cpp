// A packed body: unpacked as a reader of one byte after the other does it, and never more of it
// than is allowed. The input: how it is packed, how much is allowed, and the body.

#include "backend/Inflate.h"
#include "fuzz/Fuzzing.h"

#include <zlib.h>

#include <cstdint>
#include <string_view>
#include <variant>

namespace {

// How the stream went on, for the fuzzer to see it: zlib itself is not built for that.
__attribute__((section("__libfuzzer_extra_counters"))) std::uint8_t ways[4'096];

void note(const z_stream &stream, int result)
{
    const auto message = reinterpret_cast<std::uintptr_t>(stream.msg);
    const auto state = static_cast<std::uintptr_t>(stream.data_type & 0xC7)
        + static_cast<std::uintptr_t>(result + 8) * 131 + message / 4 % 509 + stream.adler % 7 * 31;
    ++ways[state % sizeof(ways)];
}

using Outcome = std::variant<QByteArray, InflateFault>;

constexpr int gzip = 15 + 16;
constexpr int bare = -15;

// Whether the stream went on to its end; `input` loses what was read.
enum class End { whole, broken, tooLarge };
End inflateOne(std::string_view &input, int form, qint64 largest, QByteArray &content)
{
    z_stream stream{};
    inflateInit2(&stream, form);
    Bytef in = 0;
    for (;;) {
        char out[7];
        stream.next_out = reinterpret_cast<Bytef *>(out);
        stream.avail_out = sizeof(out);
        if (stream.avail_in == 0 && !input.empty()) {
            in = static_cast<Bytef>(input.front());
            input.remove_prefix(1);
            stream.next_in = &in;
            stream.avail_in = 1;
        }
        const int result = inflate(&stream, Z_NO_FLUSH);
        note(stream, result);
        content.append(out, static_cast<qsizetype>(sizeof(out) - stream.avail_out));
        if (content.size() > largest || result != Z_OK) {
            inflateEnd(&stream);
            return content.size() > largest ? End::tooLarge
                : result == Z_STREAM_END    ? End::whole
                                            : End::broken;
        }
    }
}

Outcome slowInflate(std::string_view input, qint64 largest)
{
    QByteArray content;
    do {
        switch (inflateOne(input, gzip, largest, content)) {
        case End::whole:
            break;
        case End::broken:
            return InflateFault::broken;
        case End::tooLarge:
            return InflateFault::tooLarge;
        }
    } while (!input.empty());
    return content;
}

void append(QByteArray &bytes, uLong word)
{
    for (int shift = 0; shift < 32; shift += 8)
        bytes += static_cast<char>(word >> shift);
}

// A member that holds `packed`, which unpacks to `content`.
QByteArray member(const QByteArray &packed, const QByteArray &content)
{
    QByteArray bytes("\x1F\x8B\x08\0\0\0\0\0\0\xFF", 10);
    bytes += packed;
    const auto *const data = reinterpret_cast<const Bytef *>(content.constData());
    append(bytes, crc32(0, data, static_cast<uInt>(content.size())));
    append(bytes, static_cast<uLong>(content.size()));
    return bytes;
}

// What stands in a member as it is: letters of a list of events would never by chance be a stream
// with the right sum at its end.
QByteArray wrapped(std::string_view packed)
{
    constexpr qint64 most = 65'536;
    QByteArray content;
    std::string_view rest = packed;
    inflateOne(rest, bare, most, content);
    return member(QByteArray(bytesFrom(packed.substr(0, packed.size() - rest.size()))), content);
}

QByteArray packed(std::string_view content)
{
    QByteArray bytes(static_cast<qsizetype>(compressBound(content.size())) + 32, '\0');
    z_stream stream{};
    deflateInit2(&stream, 1, Z_DEFLATED, gzip, 8, Z_DEFAULT_STRATEGY);
    stream.next_in = const_cast<Bytef *>(reinterpret_cast<const Bytef *>(content.data()));
    stream.avail_in = static_cast<uInt>(content.size());
    stream.next_out = reinterpret_cast<Bytef *>(bytes.data());
    stream.avail_out = static_cast<uInt>(bytes.size());
    deflate(&stream, Z_FINISH);
    bytes.truncate(static_cast<qsizetype>(stream.total_out));
    deflateEnd(&stream);
    return bytes;
}

} // namespace

void fuzz(std::string_view input)
{
    if (input.size() < 2)
        return;
    const int form = input[0] % 4;
    const qint64 largest = qint64(static_cast<unsigned char>(input[1])) * 64;
    const std::string_view body = input.substr(2);
    QByteArray compressed = bytesFrom(body);
    if (form == 1) {
        compressed = wrapped(body);
    } else if (form == 2) {
        // In two members, as a proxy may send it.
        const std::string_view front = body.substr(0, body.size() / 3);
        compressed = packed(front) + packed(body.substr(front.size()));
        const Outcome whole = inflateGzip(compressed, qint64(1) << 30);
        require(whole == Outcome(QByteArray(bytesFrom(body))), "what is packed is unpacked");
    }
    const Outcome outcome = inflateGzip(compressed, largest);
    require(outcome == slowInflate({compressed.constData(), size_t(compressed.size())}, largest),
            "the same comes out");
    if (const auto *const content = std::get_if<QByteArray>(&outcome))
        require(content->size() <= largest, "never more than is allowed");
}
