#include "backend/Configuration.h"

#include "platform/Text.h"

namespace {

QString readConfigValue(const QString &suffix, const BundleDictionary &bundle,
                        const QProcessEnvironment &environment)
{
    const QString key = QStringLiteral("SUPABASE") + suffix;
    const auto entry = bundle.constFind(key);
    return entry != bundle.constEnd() ? *entry : environment.value(key);
}

} // namespace

Configuration Configuration::from(const BundleDictionary &bundle,
                                  const QProcessEnvironment &environment)
{
    return {normalizeURL(readConfigValue(QStringLiteral("_URL"), bundle, environment)),
            trimmed(readConfigValue(QStringLiteral("_KEY"), bundle, environment))};
}

QString normalizeURL(QStringView text)
{
    const QString base = trimmed(text);
    if (base.isEmpty() || base.startsWith(QLatin1StringView("http://"))
        || base.startsWith(QLatin1StringView("https://")))
        return base;
    return QStringLiteral("https://") + base;
}
