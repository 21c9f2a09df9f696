// Where a reply may send a request on to: never to anybody else, since its headers carry the key
// and the member's token. The input: the address that was asked, the status, the Location.

#include "backend/Redirects.h"
#include "fuzz/Fuzzing.h"
#include "fuzz/Origin.h"
#include "platform/Address.h"

#include <optional>
#include <string_view>

using namespace Qt::StringLiterals;

namespace {

// As the manager takes it from the reply's head.
QUrl locationFrom(std::string_view header)
{
    const QUrl url(textFrom(header));
    return url.isValid() ? url : QUrl(QString::fromLatin1(bytesFrom(header)));
}

void requireSameOrigin(const QUrl &asked, const QUrl &next)
{
    const Origin from = originOf(asked);
    const Origin to = originOf(next);
    require(to.scheme == from.scheme, "the same scheme is spoken");
    require(to.host == from.host, "the same host is asked");
    require(to.port == from.port, "the same port is asked");
    require(next.isValid() && !next.host().isEmpty(), "somebody is asked");
}

} // namespace

void fuzz(std::string_view input)
{
    const auto parts = partsOf(input, 3);
    const auto asked = requestAddress(textFrom(parts[0]));
    if (!asked || !asked->isValid() || !parts[0].starts_with("http"))
        return;
    Request request{"GET", *asked, {{"apikey", "k"}, {"Authorization", "Bearer t"}}, {}};
    request.address.setUserInfo({});
    const int status = QByteArray(bytesFrom(parts[1].substr(0, 4))).toInt();
    const QUrl location = locationFrom(parts[2]);

    for (const char *const verb : {"POST", "PATCH", "DELETE"}) {
        Request write = request;
        write.verb = verb;
        require(!redirected(write, status, location), "what changes something goes nowhere else");
    }
    require(!redirected(request, std::nullopt, location), "what is no reply sends nobody on");
    const auto next = redirected(request, status, location);
    if (!next)
        return;
    require(status == 301 || status == 302 || status == 303 || status == 307 || status == 308,
            "only a redirect sends on");
    requireSameOrigin(request.address, *next);

    // As it is asked then.
    Request second = request;
    second.address = *next;
    second.address.setUserInfo({});
    require(originOf(second.address).user.empty(), "no other authority goes along");
    if (const auto third = redirected(second, status, location))
        requireSameOrigin(request.address, *third);
}
