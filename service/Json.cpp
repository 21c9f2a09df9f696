#include "service/Json.h"

#include <cstddef>

namespace {

constexpr int deepest = 100;

bool isTooDeep(const std::string &text)
{
    int depth = 0;
    bool isText = false;
    for (std::size_t at = 0; at < text.size(); ++at) {
        const char letter = text[at];
        if (isText) {
            if (letter == '\\')
                ++at;
            else if (letter == '"')
                isText = false;
        } else if (letter == '"') {
            isText = true;
        } else if (letter == '[' || letter == '{') {
            if (++depth > deepest)
                return true;
        } else if (letter == ']' || letter == '}') {
            --depth;
        }
    }
    return false;
}

} // namespace

nlohmann::json parsedJson(const std::string &text)
{
    return isTooDeep(text) ? nlohmann::json(nlohmann::json::value_t::discarded)
                           : nlohmann::json::parse(text, nullptr, false);
}
