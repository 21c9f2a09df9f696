// What a person is told of a reply that is none: the service's own words, letter by letter, and a
// bounded piece of what cannot be read. The input: a status, then the reply's body.

#include "backend/AuthReply.h"
#include "backend/DecodeFailure.h"
#include "backend/SupabaseError.h"
#include "backend/UndecodableReply.h"
#include "fuzz/Fuzzing.h"
#include "fuzz/SlowRecords.h"
#include "platform/Text.h"

#include <string_view>

using namespace Qt::StringLiterals;

namespace {

using Case = SupabaseError::Case;

const QString fallback = u"Authentication failed."_s;

QString expectedReason(std::string_view body)
{
    if (const auto record = slowAuthErrorResponse(slowJson(body)))
        return record->errorDescription.value_or(record->error.value_or(fallback));
    const auto text = slowUtf8(body);
    return text && !text->isEmpty() ? *text : fallback;
}

void requireRefusal(int status, std::string_view body)
{
    try {
        granted({status, bytesFrom(body)}, fallback);
        require(status >= 200 && status < 300, "only a success grants anything");
    } catch (const SupabaseError &error) {
        require(error.kind() == Case::authError, "a refusal is one of the account");
        require(error.errorDescription() == expectedReason(body), "a refusal says why");
    } catch (const UndecodableReply &) {
        require(status >= 200 && status < 300, "only a success must be readable");
    }
}

void requireJudgement(int status, std::string_view body)
{
    try {
        require(judged(status, bytesFrom(body)) == bytesFrom(body), "a success keeps its body");
        require(status >= 200 && status < 300, "only these are successes");
    } catch (const SupabaseError &error) {
        require(error.kind() == Case::httpError && error.status() == status
                    && error.body() == bytesFrom(body),
                "a failure keeps its status and its body");
        const auto text = slowUtf8(body);
        QString expected = u"HTTP "_s + QString::number(status);
        if (text && !text->isEmpty())
            expected += u": "_s + *text;
        require(error.errorDescription() == expected, "a failure says what the service said");
    }
}

void requirePreview(std::string_view body)
{
    const QString message = decodeFailureMessage({u"why"_s}, bytesFrom(body));
    const QString front = u"Decode error: why. Body preview: "_s;
    const QString back = u". Saved response to /tmp/events-response.json"_s;
    require(message.startsWith(front) && message.endsWith(back), "the message says what happened");

    const QString shown = message.sliced(front.size(), message.size() - front.size() - back.size());
    const auto text = slowUtf8(body);
    if (!text) {
        require(shown == u"<non-utf8 body>"_s, "what is no text is not shown");
        return;
    }
    if (shown == *text) {
        require(characterCount(shown) <= 400, "what is whole is short");
        return;
    }
    require(shown.endsWith(u'…') && text->startsWith(shown.chopped(1)), "a piece is the beginning");
    require(characterCount(shown.chopped(1)) == 400, "a piece has its length");
}

} // namespace

void fuzz(std::string_view input)
{
    const auto parts = partsOf(input, 2);
    const int status = QByteArray(bytesFrom(parts[0].substr(0, 4))).toInt();
    requireRefusal(status, parts[1]);
    requireJudgement(status, parts[1]);
    requirePreview(parts[1]);
}
