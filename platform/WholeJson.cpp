#include "platform/WholeJson.h"

#include <algorithm>
#include <new>
#include <string>

using namespace Qt::StringLiterals;

namespace {

constexpr size_t deepest = 512;
constexpr char byteOrderMark[] = "\xEF\xBB\xBF";

bool isDigit(char c)
{
    return c >= '0' && c <= '9';
}

bool isPartOfNumber(char c)
{
    return isDigit(c) || c == '-' || c == '+' || c == '.' || c == 'e' || c == 'E';
}

// Past the digits that begin at `at`, of which there must be one; else nullptr.
const char *pastDigits(const char *at, const char *end)
{
    if (at == end || !isDigit(*at))
        return nullptr;
    return std::find_if_not(at, end, isDigit);
}

// The grammar of numbers in RFC 8259.
bool isNumber(const char *at, const char *end)
{
    if (at != end && *at == '-')
        ++at;
    if (at != end && *at == '0')
        ++at;
    else if (at = pastDigits(at, end); !at)
        return false;
    if (at != end && *at == '.') {
        at = pastDigits(at + 1, end);
        if (!at)
            return false;
    }
    if (at != end && (*at == 'e' || *at == 'E')) {
        ++at;
        if (at != end && (*at == '+' || *at == '-'))
            ++at;
        at = pastDigits(at, end);
        if (!at)
            return false;
    }
    return at == end;
}

// The end of the string whose opening quote is at `at`.
char *pastString(char *at, char *end)
{
    for (++at; at < end && *at != '"'; ++at) {
        if (*at == '\\')
            ++at;
    }
    return std::min(at + 1, end);
}

// Puts 0 for every number of right grammar; nothing else changes its place.
void levelNumbers(std::string &body)
{
    char *at = body.data();
    char *const end = at + body.size();
    while (at < end) {
        if (*at == '"') {
            at = pastString(at, end);
        } else if (isPartOfNumber(*at)) {
            char *const past = std::find_if_not(at, end, isPartOfNumber);
            if (isNumber(at, past)) {
                std::fill(at, past, ' ');
                *at = '0';
            }
            at = past;
        } else {
            ++at;
        }
    }
}

// How many arrays and objects hold one another, at most.
size_t depthOf(std::string &body)
{
    size_t depth = 0;
    size_t most = 0;
    char *at = body.data();
    char *const end = at + body.size();
    while (at < end) {
        if (*at == '"') {
            at = pastString(at, end);
            continue;
        }
        if (*at == '[' || *at == '{')
            most = std::max(most, ++depth);
        else if ((*at == ']' || *at == '}') && depth > 0)
            --depth;
        ++at;
    }
    return most;
}

QString kindOf(simdjson::dom::element value)
{
    switch (value.type()) {
    case simdjson::dom::element_type::ARRAY:
        return u"an array"_s;
    case simdjson::dom::element_type::OBJECT:
        return u"an object"_s;
    case simdjson::dom::element_type::INT64:
    case simdjson::dom::element_type::UINT64:
    case simdjson::dom::element_type::DOUBLE:
        return u"a number"_s;
    case simdjson::dom::element_type::STRING:
        return u"a string"_s;
    case simdjson::dom::element_type::BOOL:
        return u"a boolean"_s;
    case simdjson::dom::element_type::NULL_VALUE:
        break;
    }
    return u"null"_s;
}

simdjson::error_code parse(simdjson::dom::parser &parser, const QByteArray &whole,
                           simdjson::dom::element &root)
{
    // The parser reads, but does not mind, what lies behind the body's end: where there is room, as
    // in a body that grew while it arrived, it needs no copy.
    const bool isPadded =
        whole.capacity() - whole.size() >= static_cast<qsizetype>(simdjson::SIMDJSON_PADDING);
    QByteArrayView body = whole;
    if (body.startsWith(byteOrderMark))
        body = body.sliced(3);
    // A second mark is none; some versions of the parser skip one by themselves.
    if (body.startsWith(byteOrderMark))
        return simdjson::TAPE_ERROR;
    const auto size = static_cast<size_t>(body.size());
    if (size == 0)
        return simdjson::EMPTY;
    if (const auto error = parser.allocate(size, deepest))
        return error;
    const auto error = parser.parse(body.data(), size, !isPadded).get(root);
    if (!error || error == simdjson::MEMALLOC || error == simdjson::CAPACITY)
        return error;

    // The value of a number may be more than can be held, which is no fault of the body: without
    // the values only the grammar counts. What the parser calls it differs from version to version,
    // so that every body that is refused is looked at twice.
    std::string levelled(body.data(), size);
    levelNumbers(levelled);
    // The parser's own limit is one less for the innermost that hold something.
    if (depthOf(levelled) > deepest)
        return simdjson::DEPTH_ERROR;
    if (const auto deeper = parser.allocate(size, deepest + 1))
        return deeper;
    return parser.parse(levelled).get(root);
}

} // namespace

simdjson::error_code parseWhole(simdjson::dom::parser &parser, const QByteArray &whole,
                                simdjson::dom::element &root)
{
    const auto error = parse(parser, whole, root);
    // No fault of the body.
    if (error == simdjson::MEMALLOC)
        throw std::bad_alloc();
    return error;
}

QString textOf(std::string_view utf8)
{
    // QString takes a mark at the front for one of the encoding and drops it.
    constexpr std::string_view mark = "\xEF\xBB\xBF";
    qsizetype marks = 0;
    for (; utf8.starts_with(mark); utf8.remove_prefix(mark.size()))
        ++marks;
    QString text = QString::fromUtf8(utf8.data(), static_cast<qsizetype>(utf8.size()));
    if (marks > 0)
        text.prepend(QString(marks, QChar::ByteOrderMark));
    return text;
}

QString mismatch(QStringView wanted, simdjson::dom::element found)
{
    return u"expected %1 but found %2"_s.arg(wanted, kindOf(found));
}
