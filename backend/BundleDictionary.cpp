#include "backend/BundleDictionary.h"

#include <QXmlStreamReader>

#include <optional>

#ifdef Q_OS_MACOS
#include <CoreFoundation/CoreFoundation.h>
#else
#include <QCoreApplication>
#include <QFile>

#endif

using namespace Qt::StringLiterals;

#ifdef Q_OS_MACOS

BundleDictionary mainBundleDictionary()
{
    BundleDictionary texts;
    CFBundleRef bundle = CFBundleGetMainBundle();
    if (bundle == nullptr)
        return texts;
    for (const QString &key : {u"SUPABASE_URL"_s, u"SUPABASE_KEY"_s}) {
        const CFStringRef name = key.toCFString();
        const CFTypeRef value = CFBundleGetValueForInfoDictionaryKey(bundle, name);
        if (value != nullptr && CFGetTypeID(value) == CFStringGetTypeID())
            texts.insert(key, QString::fromCFString(static_cast<CFStringRef>(value)));
        CFRelease(name);
    }
    return texts;
}

#else

BundleDictionary mainBundleDictionary()
{
    QFile file(QCoreApplication::applicationDirPath() + u"/../share/amorvelle/Info.plist"_s);
    if (!file.open(QIODevice::ReadOnly))
        return {};
    return readPropertyList(file.readAll());
}

#endif

namespace {

void readDictionary(QXmlStreamReader &reader, BundleDictionary &texts)
{
    std::optional<QString> key;
    while (reader.readNextStartElement()) {
        if (!key) {
            if (reader.name() != "key"_L1)
                return reader.raiseError(u"a value without a key"_s);
            key = reader.readElementText();
            continue;
        }
        if (reader.name() == "string"_L1) {
            texts.insert(*key, reader.readElementText());
        } else {
            texts.remove(*key);
            reader.skipCurrentElement();
        }
        key.reset();
    }
    if (key)
        reader.raiseError(u"a key without a value"_s);
}

} // namespace

BundleDictionary readPropertyList(const QByteArray &xml)
{
    // One more sign: of a letter that is cut off at the end, the reader else waits for the rest.
    QXmlStreamReader reader(xml + '\n');
    BundleDictionary texts;
    if (!reader.readNextStartElement() || reader.name() != "plist"_L1
        || !reader.readNextStartElement() || reader.name() != "dict"_L1)
        return {};
    readDictionary(reader, texts);
    while (!reader.atEnd())
        reader.readNext();
    return reader.hasError() ? BundleDictionary{} : texts;
}
