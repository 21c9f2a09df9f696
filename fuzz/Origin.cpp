#include "fuzz/Origin.h"

#include <algorithm>
#include <cctype>
#include <utility>

namespace {

// What stands before `mark`, which goes too; nothing when it is not there.
std::string takeBefore(std::string &text, const std::string &mark)
{
    const size_t at = text.find(mark);
    if (at == std::string::npos)
        return {};
    std::string before = text.substr(0, at);
    text.erase(0, at + mark.size());
    return before;
}

std::string lower(std::string text)
{
    for (char &c : text)
        c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    return text;
}

} // namespace

Origin originOf(const QUrl &address)
{
    std::string rest = address.toEncoded().toStdString();
    Origin origin;
    origin.scheme = lower(takeBefore(rest, "://"));
    rest.erase(std::min(rest.find_first_of("/?#"), rest.size()));
    if (rest.find('@') != std::string::npos)
        origin.user = takeBefore(rest, "@");
    const size_t end =
        rest.starts_with('[') ? rest.find(']') + 1 : std::min(rest.find(':'), rest.size());
    origin.host = lower(rest.substr(0, end));
    origin.port = rest.size() > end + 1 ? rest.substr(end + 1) : "";
    if (origin.port.empty())
        origin.port = origin.scheme == "https" ? "443" : "80";
    return origin;
}
