#include "backend/Configuration.h"

#include "platform/Text.h"

using namespace Qt::StringLiterals;

namespace {

QString readConfigValue(const QString &suffix, const BundleDictionary &bundle,
                        const QProcessEnvironment &environment)
{
    const QString key = u"SUPABASE"_s + suffix;
    const auto entry = bundle.constFind(key);
    return entry != bundle.constEnd() ? *entry : environment.value(key);
}

} // namespace

Configuration Configuration::from(const BundleDictionary &bundle,
                                  const QProcessEnvironment &environment)
{
    return {normalizeURL(readConfigValue(u"_URL"_s, bundle, environment)),
            trimmed(readConfigValue(u"_KEY"_s, bundle, environment))};
}

QString normalizeURL(QStringView text)
{
    const QString base = trimmed(text);
    if (base.isEmpty() || base.startsWith(QLatin1StringView("http://"))
        || base.startsWith(QLatin1StringView("https://")))
        return base;
    return u"https://"_s + base;
}
