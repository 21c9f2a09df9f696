#include "service/Gzip.h"

#include <new>
#include <sstream>
#include <zlib.h>

bool acceptsGzip(const std::string &acceptEncoding)
{
    std::istringstream codings(acceptEncoding);
    for (std::string coding; std::getline(codings, coding, ',');) {
        std::erase(coding, ' ');
        const auto end = coding.find(';');
        if (coding.substr(0, end) == "gzip") {
            const std::string weight = end == std::string::npos ? "" : coding.substr(end + 1);
            return weight.find_first_not_of("q=0.") != std::string::npos || weight.empty();
        }
    }
    return false;
}

std::string gzipped(const std::string &bytes)
{
    z_stream stream{};
    constexpr int gzipWindow = 15 + 16;
    if (deflateInit2(&stream, Z_DEFAULT_COMPRESSION, Z_DEFLATED, gzipWindow, 8, Z_DEFAULT_STRATEGY)
        != Z_OK) {
        throw std::bad_alloc();
    }
    std::string packed(deflateBound(&stream, bytes.size()), '\0');
    stream.next_in = reinterpret_cast<Bytef *>(const_cast<char *>(bytes.data()));
    stream.avail_in = static_cast<uInt>(bytes.size());
    stream.next_out = reinterpret_cast<Bytef *>(packed.data());
    stream.avail_out = static_cast<uInt>(packed.size());
    deflate(&stream, Z_FINISH);
    packed.resize(stream.total_out);
    deflateEnd(&stream);
    return packed;
}
