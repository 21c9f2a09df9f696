#include "platform/Address.h"

#include <QByteArray>

#include <arpa/inet.h>

using namespace Qt::StringLiterals;

namespace {

enum Letters { AsciiOnly, AnyLetters };

bool isAlpha(char16_t c)
{
    return (c >= u'a' && c <= u'z') || (c >= u'A' && c <= u'Z');
}

bool isDigit(char16_t c)
{
    return c >= u'0' && c <= u'9';
}

bool isHex(char16_t c)
{
    return isDigit(c) || (c >= u'a' && c <= u'f') || (c >= u'A' && c <= u'F');
}

// unreserved and sub-delims of RFC 3986: what may stand anywhere behind the scheme.
bool isOrdinary(char16_t c)
{
    return isAlpha(c) || isDigit(c) || QStringView(u"-._~!$&'()*+,;=").contains(QChar(c));
}

// ucschar of RFC 3987, but for what is no sign at all or a space: such a text was not meant as an
// address, or not to be read as it is written.
bool isLetterOutsideAscii(char32_t c)
{
    if (c < 0xA0 || (c & 0xFFFE) == 0xFFFE || (c >= 0xFDD0 && c <= 0xFDEF))
        return false;
    switch (QChar::category(c)) {
    case QChar::Separator_Space:
    case QChar::Separator_Line:
    case QChar::Separator_Paragraph:
    case QChar::Other_Control:
    case QChar::Other_Surrogate:
    case QChar::Other_PrivateUse:
        return false;
    case QChar::Other_Format:
        // The joiners, which hold letters and pictures together.
        return c == 0x200C || c == 0x200D;
    default:
        return true;
    }
}

// Whether every sign of `part` is ordinary, a whole percent escape or one of `further`.
bool isMadeOf(QStringView part, QStringView further, Letters letters)
{
    for (qsizetype i = 0; i < part.size(); ++i) {
        const char16_t c = part[i].unicode();
        if (isOrdinary(c) || further.contains(QChar(c)))
            continue;
        if (c == u'%') {
            if (i + 2 >= part.size() || !isHex(part[i + 1].unicode())
                || !isHex(part[i + 2].unicode()))
                return false;
            i += 2;
            continue;
        }
        if (letters == AsciiOnly)
            return false;
        char32_t letter = c;
        if (part[i].isHighSurrogate() && i + 1 < part.size() && part[i + 1].isLowSurrogate()) {
            letter = QChar::surrogateToUcs4(part[i], part[i + 1]);
            ++i;
        }
        if (!isLetterOutsideAscii(letter))
            return false;
    }
    return true;
}

bool isScheme(QStringView part)
{
    if (part.isEmpty() || !isAlpha(part.front().unicode()))
        return false;
    for (const QChar c : part) {
        if (!isAlpha(c.unicode()) && !isDigit(c.unicode()) && !QStringView(u"+-.").contains(c))
            return false;
    }
    return true;
}

// What stands in square brackets: an IPv6 address, with a zone (RFC 6874) or without.
bool isNumericHost(QStringView part)
{
    const qsizetype zone = part.indexOf(u"%25");
    if (zone >= 0 && (zone + 3 == part.size() || !isMadeOf(part.sliced(zone + 3), {}, AsciiOnly)))
        return false;
    const QByteArray address = part.first(zone < 0 ? part.size() : zone).toUtf8();
    in6_addr parsed;
    return !address.contains('\0') && inet_pton(AF_INET6, address.constData(), &parsed) == 1;
}

bool isPort(QStringView part)
{
    for (const QChar c : part) {
        if (!isDigit(c.unicode()))
            return false;
    }
    return true;
}

bool isAuthority(QStringView part, Letters letters)
{
    if (const qsizetype at = part.lastIndexOf(u'@'); at >= 0) {
        if (!isMadeOf(part.first(at), u":", letters))
            return false;
        part = part.sliced(at + 1);
    }
    if (part.startsWith(u'[')) {
        const qsizetype end = part.indexOf(u']');
        if (end < 0 || !isNumericHost(part.sliced(1, end - 1)))
            return false;
        const QStringView rest = part.sliced(end + 1);
        return rest.isEmpty() || (rest.startsWith(u':') && isPort(rest.sliced(1)));
    }
    const qsizetype colon = part.lastIndexOf(u':');
    const QStringView host = colon < 0 ? part : part.first(colon);
    return isMadeOf(host, {}, letters) && (colon < 0 || isPort(part.sliced(colon + 1)));
}

struct Parts {
    QStringView scheme;
    QStringView authority;
};

// The URI-reference of RFC 3986, with the letters of RFC 3987 where these are allowed.
std::optional<Parts> parse(QStringView text, Letters letters)
{
    if (text.isEmpty())
        return std::nullopt;
    Parts parts;

    if (const qsizetype hash = text.indexOf(u'#'); hash >= 0) {
        if (!isMadeOf(text.sliced(hash + 1), u":@/?", letters))
            return std::nullopt;
        text = text.first(hash);
    }
    if (const qsizetype mark = text.indexOf(u'?'); mark >= 0) {
        if (!isMadeOf(text.sliced(mark + 1), u":@/?", letters))
            return std::nullopt;
        text = text.first(mark);
    }

    // A colon before the first slash ends the scheme: a path without a scheme may not hold one
    // there.
    const qsizetype colon = text.indexOf(u':');
    const qsizetype slash = text.indexOf(u'/');
    if (colon >= 0 && (slash < 0 || colon < slash)) {
        parts.scheme = text.first(colon);
        if (!isScheme(parts.scheme))
            return std::nullopt;
        text = text.sliced(colon + 1);
    }
    if (text.startsWith(u"//")) {
        text = text.sliced(2);
        const qsizetype end = text.indexOf(u'/');
        parts.authority = end < 0 ? text : text.first(end);
        if (!isAuthority(parts.authority, letters))
            return std::nullopt;
        text = end < 0 ? QStringView() : text.sliced(end);
    }
    if (!isMadeOf(text, u":@/", letters))
        return std::nullopt;
    return parts;
}

} // namespace

std::optional<QUrl> requestAddress(QStringView text)
{
    if (!parse(text, AsciiOnly))
        return std::nullopt;
    QUrl url(text.toString(), QUrl::StrictMode);
    return url.host().isEmpty() ? QUrl() : url;
}

QString hostAsWritten(QStringView text)
{
    const auto parts = parse(text, AsciiOnly);
    if (!parts)
        return {};
    const QStringView authority = parts->authority;
    return authority.sliced(authority.lastIndexOf(u'@') + 1).toString();
}

bool formsLink(QStringView text)
{
    return parse(text, AnyLetters).has_value();
}
