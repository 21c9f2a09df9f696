#include "service/HttpDate.h"

#include <array>
#include <ctime>

std::string httpDate()
{
    const std::time_t now = std::time(nullptr);
    std::tm moment{};
    gmtime_r(&now, &moment);
    // The names are English ones, as the program never chooses a locale.
    std::array<char, 64> text{};
    const auto size = std::strftime(text.data(), text.size(), "%a, %d %b %Y %H:%M:%S GMT", &moment);
    return {text.data(), size};
}
