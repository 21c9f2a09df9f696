#include "service/AddressQuery.h"

#include <algorithm>
#include <charconv>
#include <cstddef>

namespace {

std::string decoded(const std::string &text)
{
    std::string plain;
    for (std::size_t at = 0; at < text.size(); ++at) {
        unsigned value = 0;
        if (text[at] == '%' && at + 2 < text.size()
            && std::from_chars(&text[at + 1], &text[at] + 3, value, 16).ptr == &text[at] + 3) {
            plain += static_cast<char>(value);
            at += 2;
        } else {
            plain += text[at] == '+' ? ' ' : text[at];
        }
    }
    return plain;
}

} // namespace

std::multimap<std::string, std::string> queryOf(const std::string &target)
{
    std::multimap<std::string, std::string> query;
    for (auto at = target.find('?'); at < target.size();) {
        const auto end = std::min(target.find('&', at + 1), target.size());
        const std::string part = target.substr(at + 1, end - at - 1);
        const auto equals = std::min(part.find('='), part.size());
        if (!part.empty()) {
            query.emplace(decoded(part.substr(0, equals)),
                          equals < part.size() ? decoded(part.substr(equals + 1)) : "");
        }
        at = end;
    }
    return query;
}
