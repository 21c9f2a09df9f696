// The property list of a packager: half of one is none, and what is read of one, written again, is
// read as the same.

#include "backend/BundleDictionary.h"
#include "fuzz/Fuzzing.h"

#include <QProcessEnvironment>

#include <algorithm>
#include <string_view>

using namespace Qt::StringLiterals;

namespace {

// So that no letter has a meaning of its own, nor is taken for another's line break.
QByteArray escaped(const QString &text)
{
    QByteArray xml;
    for (const char32_t c : text.toUcs4())
        xml += "&#" + QByteArray::number(static_cast<uint>(c)) + ';';
    return xml;
}

QByteArray rewritten(const BundleDictionary &texts)
{
    QByteArray xml = "<plist><dict>";
    for (auto entry = texts.constBegin(); entry != texts.constEnd(); ++entry)
        xml += "<key>" + escaped(entry.key()) + "</key><string>" + escaped(*entry) + "</string>";
    return xml + "</dict></plist>";
}

// Whether XML has a way to write it. (The toolkit lets other signs pass as they stand.)
bool isWritable(const QString &text)
{
    return std::ranges::all_of(text.toUcs4(), [](char32_t c) {
        return c == '\t' || c == '\n' || c == '\r'
            || (c >= 0x20 && (c & 0xFFFE) != 0xFFFE && (c < 0xD800 || c > 0xDFFF));
    });
}

bool isWritable(const BundleDictionary &texts)
{
    return std::ranges::all_of(texts.keys(), [&](const QString &key) {
        return isWritable(key) && isWritable(texts.value(key));
    });
}

void requireNormalised(const BundleDictionary &texts)
{
    const Configuration configuration = Configuration::from(texts, QProcessEnvironment());
    require(normalizeURL(configuration.supabaseURL) == configuration.supabaseURL,
            "a base is normalised once and for all");
    require(configuration.supabaseURL.isEmpty() || configuration.supabaseURL.startsWith(u"http"),
            "a base has a scheme");
}

} // namespace

void fuzz(std::string_view input)
{
    const QByteArray list = bytesFrom(input);
    const BundleDictionary texts = readPropertyList(list);
    requireNormalised(texts);
    // In other encodings than that of all lists a sign may be none before the next has come, and
    // one may come that XML has no way to write.
    if (texts.isEmpty() || list.count("encoding") != list.count("encoding=\"UTF-8\""))
        return;
    require(!isWritable(texts) || readPropertyList(rewritten(texts)) == texts,
            "what is written again reads the same");
    const QByteArray whole = list.trimmed();
    require(readPropertyList(whole.chopped(1)).isEmpty(), "a list without its last sign is none");
    require(readPropertyList(whole.first(whole.size() / 2)).isEmpty(), "half a list is none");
}
