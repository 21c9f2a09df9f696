#include "backend/Redirects.h"

namespace {

bool pointsElsewhere(int status)
{
    return status == 301 || status == 302 || status == 303 || status == 307 || status == 308;
}

int portOf(const QUrl &address)
{
    return address.port(address.scheme() == QLatin1StringView("https") ? 443 : 80);
}

} // namespace

std::optional<QUrl> redirected(const Request &request, std::optional<int> status,
                               const QUrl &location)
{
    if (request.verb != "GET" || !status || !pointsElsewhere(*status) || location.isEmpty())
        return std::nullopt;
    const QUrl next = request.address.resolved(location);
    if (!next.isValid() || next.scheme() != request.address.scheme()
        || next.host() != request.address.host() || portOf(next) != portOf(request.address))
        return std::nullopt;
    return next;
}
