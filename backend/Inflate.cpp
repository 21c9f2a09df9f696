#include "backend/Inflate.h"

#define ZLIB_CONST
#include <zlib.h>

#include <QtEndian>

#include <algorithm>
#include <memory>

namespace {

constexpr int gzipOnly = 15 + 16; // the largest window, and no other header than gzip's
constexpr qint64 smallestBuffer = qint64(16) * 1024;

struct InflateEnder {
    void operator()(z_stream *stream) const { inflateEnd(stream); }
};

// The last four bytes say how much comes out (modulo 4 GiB): a hint only, and an untrusted one.
qint64 firstGuess(const QByteArray &compressed, qint64 largest)
{
    qint64 promised = 0;
    if (compressed.size() >= 4)
        promised = qFromLittleEndian<quint32>(compressed.constEnd() - 4);
    // A list of events inflates to some ten times its size. What promises more has to show it.
    const qint64 likely = std::min<qint64>(promised, compressed.size() * 16);
    return std::clamp(likely + 1, smallestBuffer, std::max(largest + 1, smallestBuffer));
}

uInt chunk(qint64 size)
{
    return static_cast<uInt>(std::min<qint64>(size, 1 << 30));
}

} // namespace

std::variant<QByteArray, InflateFault> inflateGzip(const QByteArray &compressed, qint64 largest)
{
    z_stream stream{};
    if (inflateInit2(&stream, gzipOnly) != Z_OK)
        return InflateFault::broken;
    const std::unique_ptr<z_stream, InflateEnder> ender(&stream);

    const auto *next = reinterpret_cast<const Bytef *>(compressed.constData());
    qint64 left = compressed.size();
    QByteArray content(firstGuess(compressed, largest), Qt::Uninitialized);
    qint64 filled = 0;
    for (;;) {
        if (filled == content.size())
            content.resize(std::min(content.size() * 2, std::max(largest + 1, smallestBuffer)));
        const uInt given = chunk(left);
        const uInt room = chunk(content.size() - filled);
        stream.next_in = next;
        stream.avail_in = given;
        stream.next_out = reinterpret_cast<Bytef *>(content.data()) + filled;
        stream.avail_out = room;
        const int result = inflate(&stream, Z_NO_FLUSH);
        next += given - stream.avail_in;
        left -= given - stream.avail_in;
        filled += room - stream.avail_out;
        if (filled > largest)
            return InflateFault::tooLarge;
        if (result == Z_STREAM_END) {
            if (left == 0)
                break;
            if (inflateReset(&stream) != Z_OK)
                return InflateFault::broken;
        } else if (result != Z_OK) {
            return InflateFault::broken;
        }
    }
    content.truncate(filled);
    return content;
}
