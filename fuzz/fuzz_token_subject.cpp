// Whose a token is: what a reader finds that goes by the letter of the rule. A token made for a
// subject gives it back.

#include "backend/JwtSubject.h"
#include "fuzz/Fuzzing.h"
#include "fuzz/SlowJson.h"
#include "platform/JsonText.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

using namespace Qt::StringLiterals;

namespace {

constexpr std::string_view letters =
    "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";

std::optional<std::string> decoded(std::string claims)
{
    for (char &c : claims)
        c = c == '-' ? '+' : c == '_' ? '/' : c;
    while (claims.size() % 4 != 0)
        claims += '=';
    for (int filler = 0; filler < 2 && claims.ends_with('='); ++filler)
        claims.pop_back();

    std::string bytes;
    unsigned bits = 0;
    int count = 0;
    for (const char c : claims) {
        const size_t value = letters.find(c);
        if (value == letters.npos)
            return std::nullopt;
        bits = bits * 64 + static_cast<unsigned>(value);
        count += 6;
        if (count >= 8) {
            count -= 8;
            bytes += static_cast<char>(bits >> count);
            bits &= (1U << count) - 1;
        }
    }
    return bytes;
}

std::optional<QString> expectedSubject(std::string_view token)
{
    std::vector<std::string> pieces(1);
    for (const char c : token) {
        if (c != '.')
            pieces.back() += c;
        else if (!pieces.back().empty())
            pieces.emplace_back();
    }
    if (pieces.size() < 2 || pieces[1].empty())
        return std::nullopt;
    const auto claims = decoded(pieces[1]);
    const auto record = claims ? slowJson(*claims) : std::nullopt;
    const SlowJson *const subject =
        record && record->kind == SlowJson::Kind::record ? record->find(u"sub"_s) : nullptr;
    if (!subject || subject->kind != SlowJson::Kind::text)
        return std::nullopt;
    return subject->text;
}

} // namespace

void fuzz(std::string_view input)
{
    require(jwtSubject(textFrom(input)) == expectedSubject(input), "the same subject is found");

    JsonObjectWriter claims;
    const QString subject = textFrom(input);
    claims.add("sub", subject);
    const QByteArray token = "h."
        + claims.object().toBase64(QByteArray::Base64UrlEncoding | QByteArray::OmitTrailingEquals)
        + ".s";
    require(jwtSubject(QString::fromLatin1(token)) == subject, "a token gives its subject back");
}
