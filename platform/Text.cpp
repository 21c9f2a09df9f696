#include "platform/Text.h"

#include <QStringDecoder>

#include <unicode/ubrk.h>
#include <unicode/uchar.h>
#include <unicode/unorm2.h>
#include <unicode/ustring.h>

#include <memory>

namespace {

const UChar *units(QStringView text)
{
    return reinterpret_cast<const UChar *>(text.utf16());
}

int32_t length(QStringView text)
{
    return static_cast<int32_t>(text.size());
}

bool isBlank(char16_t unit)
{
    switch (unit) {
    case 0x0020:
    case 0x0085:
    case 0x00A0:
    case 0x1680:
    case 0x2028:
    case 0x2029:
    case 0x202F:
    case 0x205F:
    case 0x3000:
        return true;
    default:
        return (unit >= 0x0009 && unit <= 0x000D) || (unit >= 0x2000 && unit <= 0x200B);
    }
}

// Below U+0300 nothing composes and nothing decomposes canonically once composed: such a text is
// its own NFC.
bool isPlain(QStringView text)
{
    for (const QChar c : text) {
        if (c.unicode() >= 0x0300)
            return false;
    }
    return true;
}

const UNormalizer2 *composer()
{
    UErrorCode status = U_ZERO_ERROR;
    const UNormalizer2 *const nfc = unorm2_getNFCInstance(&status);
    return U_SUCCESS(status) ? nfc : nullptr;
}

bool isComposed(QStringView text)
{
    if (isPlain(text))
        return true;
    UErrorCode status = U_ZERO_ERROR;
    return unorm2_isNormalized(composer(), units(text), length(text), &status) != 0;
}

QString composed(QStringView text)
{
    // Three times: no character composes to more than that (its expansion factor in UTF-16).
    QString result(text.size() * 3, Qt::Uninitialized);
    UErrorCode status = U_ZERO_ERROR;
    const int32_t size =
        unorm2_normalize(composer(), units(text), length(text),
                         reinterpret_cast<UChar *>(result.data()), length(result), &status);
    if (U_FAILURE(status))
        return text.toString();
    result.truncate(size);
    return result;
}

struct BreakCloser {
    void operator()(UBreakIterator *breaks) const { ubrk_close(breaks); }
};

// An iterator over the ends of characters, or none for a text that needs none.
std::unique_ptr<UBreakIterator, BreakCloser> characterBreaks(QStringView text)
{
    UErrorCode status = U_ZERO_ERROR;
    return std::unique_ptr<UBreakIterator, BreakCloser>(
        ubrk_open(UBRK_CHARACTER, "", units(text), length(text), &status));
}

// Case-ignorable as Foundation reads it: marks, format characters, modifiers and
// the two apostrophes, but no other punctuation, so that x:y becomes X:Y.
bool isCaseIgnorable(UChar32 c)
{
    constexpr uint32_t ignorable =
        U_GC_MN_MASK | U_GC_ME_MASK | U_GC_CF_MASK | U_GC_LM_MASK | U_GC_SK_MASK;
    return c == 0x0027 || c == 0x2019 || (U_GET_GC_MASK(c) & ignorable) != 0;
}

} // namespace

QString trimmed(QStringView text)
{
    qsizetype begin = 0;
    qsizetype end = text.size();
    while (begin < end && isBlank(text[begin].unicode()))
        ++begin;
    while (end > begin && isBlank(text[end - 1].unicode()))
        --end;
    return text.sliced(begin, end - begin).toString();
}

bool sameText(QStringView a, QStringView b)
{
    if (a == b)
        return true;
    if (isPlain(a) && isPlain(b))
        return false;
    return composed(a) == composed(b);
}

QString canonical(const QString &text)
{
    return isComposed(text) ? text : composed(text);
}

bool beforeByCharacter(QStringView a, QStringView b)
{
    const QString left = isComposed(a) ? QString() : composed(a);
    const QString right = isComposed(b) ? QString() : composed(b);
    const QStringView x = left.isNull() ? a : QStringView(left);
    const QStringView y = right.isNull() ? b : QStringView(right);
    return u_strCompare(units(x), length(x), units(y), length(y), true) < 0;
}

qsizetype characterCount(QStringView text)
{
    const auto breaks = characterBreaks(text);
    qsizetype count = 0;
    while (breaks && ubrk_next(breaks.get()) != UBRK_DONE)
        ++count;
    return count;
}

QString firstCharacters(QStringView text, qsizetype count)
{
    const auto breaks = characterBreaks(text);
    qsizetype end = 0;
    for (; breaks && count > 0; --count) {
        const int32_t next = ubrk_next(breaks.get());
        if (next == UBRK_DONE)
            break;
        end = next;
    }
    return text.first(end).toString();
}

QString capitalised(QStringView text)
{
    QString result;
    result.reserve(text.size());
    bool isInWord = false;
    for (qsizetype i = 0; i < text.size();) {
        UChar32 c = 0;
        const UChar *const all = units(text);
        U16_NEXT(all, i, text.size(), c);
        if (u_hasBinaryProperty(c, UCHAR_CASED)) {
            UChar source[2];
            int32_t sourceSize = 0;
            U16_APPEND_UNSAFE(source, sourceSize, c);
            UChar mapped[8];
            UErrorCode status = U_ZERO_ERROR;
            const int32_t size = isInWord
                ? u_strToLower(mapped, 8, source, sourceSize, "", &status)
                : u_strToTitle(mapped, 8, source, sourceSize, nullptr, "", &status);
            result.append(QStringView(mapped, size));
            isInWord = true;
        } else {
            result.append(QChar::fromUcs4(static_cast<char32_t>(c)));
            isInWord = isInWord && isCaseIgnorable(c);
        }
    }
    return result;
}

std::optional<QString> textOfUtf8(QByteArrayView bytes)
{
    QStringDecoder decoder(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
    QString text = decoder(bytes);
    if (decoder.hasError())
        return std::nullopt;
    return text;
}
