#include "backend/JwtSubject.h"

#include "platform/WholeJson.h"

#include <QStringList>

#include <algorithm>
#include <string_view>

namespace {

bool isBase64Letter(char16_t c)
{
    return (c >= u'A' && c <= u'Z') || (c >= u'a' && c <= u'z') || (c >= u'0' && c <= u'9')
        || c == u'+' || c == u'/';
}

// Whole groups of four, filled up with at most two "=". (Qt's own decoder overlooks what it does
// not know.)
bool isBase64(QStringView text)
{
    QStringView letters = text;
    while (text.size() - letters.size() < 2 && letters.endsWith(u'='))
        letters.chop(1);
    return text.size() % 4 == 0
        && std::ranges::all_of(letters, [](QChar c) { return isBase64Letter(c.unicode()); });
}

} // namespace

std::optional<QString> jwtSubject(const QString &token)
{
    const QStringList pieces = token.split(u'.', Qt::SkipEmptyParts);
    if (pieces.size() < 2)
        return std::nullopt;
    QString claims = pieces[1];
    claims.replace(u'-', u'+').replace(u'_', u'/');
    while (claims.size() % 4 != 0)
        claims += u'=';
    if (!isBase64(claims))
        return std::nullopt;

    simdjson::dom::parser parser;
    simdjson::dom::element root;
    if (parseWhole(parser, QByteArray::fromBase64(claims.toLatin1()), root))
        return std::nullopt;
    std::string_view subject;
    if (!root.is_object() || root.at_key("sub").get(subject) != simdjson::SUCCESS)
        return std::nullopt;
    return textOf(subject);
}
