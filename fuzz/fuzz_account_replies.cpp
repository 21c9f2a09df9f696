// What is granted to who typed an address: read as the slow reader reads it, and a session of just
// that. The input: the typed address, then the reply's body.

#include "backend/AuthReply.h"
#include "backend/JwtSubject.h"
#include "backend/UndecodableReply.h"
#include "fuzz/Fuzzing.h"
#include "fuzz/SlowRecords.h"
#include "platform/JsonText.h"

#include <optional>
#include <string_view>
#include <variant>

using namespace Qt::StringLiterals;

namespace {

QByteArray rewritten(const AuthResponse &response)
{
    JsonObjectWriter writer;
    writer.add("access_token", response.access_token);
    QByteArray body = writer.object();
    if (response.user) {
        JsonObjectWriter user;
        user.add("id", response.user->id);
        user.add("email", response.user->email);
        body.chop(1);
        body += (response.access_token ? "," : "") + ("\"user\":" + user.object()) + '}';
    }
    return body;
}

void requireSession(const AuthResponse &response, const QString &typed)
{
    const Session session = sessionOf(response, typed);
    require(session.accessToken == response.access_token, "the token is the service's");
    if (response.user) {
        require(session.userId == response.user->id, "the account is the service's");
        require(session.userEmail == response.user->email.value_or(typed), "so is its address");
        return;
    }
    require(session.userEmail == typed, "without an account the address is the typed one");
    require(session.userId
                == (response.access_token ? jwtSubject(*response.access_token) : std::nullopt),
            "without an account the token says whose it is");
}

} // namespace

void fuzz(std::string_view input)
{
    const auto parts = partsOf(input, 2);
    const auto expected = slowAuthResponse(slowJson(parts[1]));
    std::optional<AuthResponse> response;
    try {
        response = granted({200, bytesFrom(parts[1])}, u"Sign up failed."_s);
    } catch (const UndecodableReply &error) {
        require(error.localizedDescription().startsWith(u"AuthResponse"), "a failure says where");
    }
    require(response == expected, "the same bodies grant the same");
    if (!response)
        return;
    const auto again = decodeAuthResponse(rewritten(*response));
    require(std::holds_alternative<AuthResponse>(again)
                && std::get<AuthResponse>(again) == *response,
            "what is written again reads the same");
    requireSession(*response, textFrom(parts[0]));
}
