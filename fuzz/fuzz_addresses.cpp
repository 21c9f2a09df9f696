// What is configured and typed as an address: nothing is repaired, and whatever a row is called,
// its request goes to the service's host and names that row. The input: a base, then an identifier.

#include "backend/EventRequests.h"
#include "backend/SupabaseError.h"
#include "backend/TransportError.h"
#include "fuzz/Fuzzing.h"
#include "fuzz/Origin.h"
#include "platform/Address.h"

#include <algorithm>
#include <optional>
#include <string_view>

using namespace Qt::StringLiterals;

namespace {

bool isHex(char16_t c)
{
    return QStringView(u"0123456789abcdefABCDEF").contains(QChar(c));
}

// Whether RFC 3986 has a use for each sign.
bool isMadeOfSigns(const QString &text)
{
    constexpr QStringView signs = u"ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789"
                                  "-._~:/?#[]@!$&'()*+,;=%";
    for (qsizetype i = 0; i < text.size(); ++i) {
        if (!signs.contains(text[i]))
            return false;
        if (text[i] == u'%'
            && (i + 2 >= text.size() || !isHex(text[i + 1].unicode())
                || !isHex(text[i + 2].unicode())))
            return false;
    }
    return true;
}

// What stands behind the host. Escapes may be written in another way that means the same.
void requireAsWritten(const QUrl &address, const QString &text)
{
    const auto tail = [](const QString &whole) {
        const qsizetype slash = whole.indexOf(u'/', whole.indexOf(u"//"_s) + 2);
        return slash < 0 ? QString() : whole.sliced(slash);
    };
    const QString sent = QString::fromLatin1(address.toEncoded());
    require(text.contains(u'%') || tail(sent) == tail(text),
            "what is asked for is as it is written");
}

void requireStrict(const QString &text)
{
    const auto address = requestAddress(text);
    if (!address)
        return;
    require(!text.isEmpty() && isMadeOfSigns(text), "an address has no other signs");
    require(text.count(u'#') <= 1, "an address has one fragment at most");
    require(formsLink(text), "an address is a link");
    if (address->isValid()) {
        require(!address->host().isEmpty(), "somebody is asked");
        requireAsWritten(*address, text);
    }
    require(!hostAsWritten(text).contains(u'@'), "a host is told without what may be a secret");
}

template <typename Make>
std::optional<Request> made(const QString &base, Make make)
{
    try {
        return make();
    } catch (const SupabaseError &error) {
        require(error == SupabaseError::invalidURL(base), "an address that is none is told");
    } catch (const TransportError &error) {
        require(!error.localizedDescription().isEmpty(), "a host that cannot be is told");
    }
    return std::nullopt;
}

void requireRow(const Configuration &configuration, const QString &id)
{
    if (!configuration.isComplete())
        return;
    const Session session{u"t"_s, {}, {}};
    const auto fetch =
        made(configuration.supabaseURL, [&] { return fetchEventsRequest(configuration, session); });
    const auto change = made(configuration.supabaseURL,
                             [&] { return deleteEventRequest(configuration, session, id); });
    if (!change)
        return;
    require(fetch.has_value(), "where a row is found, the list is");
    const Origin service = originOf(fetch->address);
    const Origin asked = originOf(change->address);
    require(asked.scheme == service.scheme && asked.user == service.user
                && asked.host == service.host && asked.port == service.port,
            "a row is asked for at the service");
    if (configuration.supabaseURL.contains(u'?') || configuration.supabaseURL.contains(u'#'))
        return;
    require(change->address.path(QUrl::FullyEncoded).endsWith(u"/rest/v1/events"),
            "a row is one of the events");
    require(change->address.query(QUrl::FullyEncoded).startsWith(u"id=eq."),
            "a request that deletes names a row");
}

} // namespace

void fuzz(std::string_view input)
{
    const auto parts = partsOf(input, 2);
    const QString base = textFrom(parts[0]);
    const QString id = textFrom(parts[1]);
    requireStrict(base);
    requireStrict(id);
    requireStrict(base + id);
    requireRow({normalizeURL(base), u"k"_s}, id);
    requireRow({u"https://x.supabase.co"_s, u"k"_s}, id);
}
