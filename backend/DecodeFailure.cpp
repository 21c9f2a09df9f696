#include "backend/DecodeFailure.h"

#include "backend/DiagnosticFile.h"
#include "platform/Text.h"

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype longestPreview = 400;

QString preview(const QByteArray &body)
{
    const QString text = textOfUtf8(body).value_or(u"<non-utf8 body>"_s);
    const QString head = firstCharacters(text, longestPreview);
    return head.size() < text.size() ? head + u"…"_s : text;
}

} // namespace

QString decodeFailureMessage(const DecodingError &error, const QByteArray &body)
{
    return u"Decode error: "_s + error.description + u". Body preview: "_s + preview(body)
        + u". Saved response to "_s + defaultDiagnosticFile();
}
