#include "service/EmailRule.h"

#include <algorithm>
#include <cstddef>
#include <string_view>

namespace {

bool isLetterOrDigit(char letter)
{
    return (letter >= 'a' && letter <= 'z') || (letter >= 'A' && letter <= 'Z')
        || (letter >= '0' && letter <= '9');
}

bool isName(std::string_view name)
{
    constexpr std::size_t longestName = 63;
    return !name.empty() && name.size() <= longestName && isLetterOrDigit(name.front())
        && isLetterOrDigit(name.back()) && std::all_of(name.begin(), name.end(), [](char letter) {
               return isLetterOrDigit(letter) || letter == '-';
           });
}

} // namespace

bool isEmail(const std::string &text)
{
    const auto at = text.find('@');
    if (at == 0 || at == std::string::npos)
        return false;
    constexpr std::string_view marks = ".!#$%&'*+/=?^_`{|}~-";
    const bool isLocalPart =
        std::all_of(text.begin(), text.begin() + static_cast<std::ptrdiff_t>(at), [&](char letter) {
            return isLetterOrDigit(letter) || marks.find(letter) != std::string_view::npos;
        });
    std::string_view rest = std::string_view(text).substr(at + 1);
    for (auto dot = rest.find('.'); dot != std::string_view::npos; dot = rest.find('.')) {
        if (!isName(rest.substr(0, dot)))
            return false;
        rest.remove_prefix(dot + 1);
    }
    return isLocalPart && isName(rest);
}
