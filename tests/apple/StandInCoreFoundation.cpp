#include "apple/StandInCoreFoundation.h"

#include <CoreFoundation/CoreFoundation.h>

#include <memory>
#include <utility>
#include <vector>

using namespace Qt::StringLiterals;
using StandInCoreFoundation::Value;

namespace {

struct Object {
    explicit Object(Value content)
        : value(std::move(content))
    {
    }
    Value value;
};

int heldObjects = 0;

CFTypeRef made(Value value)
{
    ++heldObjects;
    return new Object(std::move(value));
}

const Value &valueOf(CFTypeRef object)
{
    return static_cast<const Object *>(object)->value;
}

QString textOf(CFTypeRef object)
{
    return std::get<QString>(valueOf(object));
}

QHash<QString, Value> &written()
{
    static QHash<QString, Value> values;
    return values;
}

/// What the bundle's owner keeps alive.
std::vector<std::unique_ptr<Object>> &bundlesOwn()
{
    static std::vector<std::unique_ptr<Object>> objects;
    return objects;
}

const Object application(u"the running application"_s);

} // namespace

namespace StandInCoreFoundation {

std::optional<QHash<QString, Value>> &bundle()
{
    static std::optional<QHash<QString, Value>> dictionary;
    return dictionary;
}

QHash<QString, Value> &preferences()
{
    static QHash<QString, Value> values;
    return values;
}

const QHash<QString, Value> &writtenPreferences()
{
    return written();
}

int held()
{
    return heldObjects;
}

} // namespace StandInCoreFoundation

using namespace StandInCoreFoundation;

// The toolkit's own bridges, which it has on macOS only.

CFStringRef QString::toCFString() const
{
    return static_cast<CFStringRef>(made(*this));
}

QString QString::fromCFString(CFStringRef text)
{
    return textOf(text);
}

CFDataRef QByteArray::toCFData() const
{
    return static_cast<CFDataRef>(made(*this));
}

QByteArray QByteArray::fromCFData(CFDataRef data)
{
    return std::get<QByteArray>(valueOf(data));
}

void CFRelease(CFTypeRef object)
{
    --heldObjects;
    delete static_cast<const Object *>(object);
}

CFTypeID CFGetTypeID(CFTypeRef object)
{
    return std::holds_alternative<QString>(valueOf(object)) ? CFStringGetTypeID()
                                                            : CFDataGetTypeID();
}

CFTypeID CFStringGetTypeID()
{
    return 7;
}

CFTypeID CFDataGetTypeID()
{
    return 20;
}

CFBundleRef CFBundleGetMainBundle()
{
    return bundle() ? reinterpret_cast<CFBundleRef>(&*bundle()) : nullptr;
}

CFTypeRef CFBundleGetValueForInfoDictionaryKey(CFBundleRef which, CFStringRef key)
{
    const auto &values = *reinterpret_cast<const QHash<QString, Value> *>(which);
    const auto found = values.constFind(textOf(key));
    if (found == values.constEnd())
        return nullptr;
    bundlesOwn().push_back(std::make_unique<Object>(*found));
    return bundlesOwn().back().get();
}

const CFStringRef kCFPreferencesCurrentApplication =
    static_cast<CFStringRef>(static_cast<CFTypeRef>(&application));

CFPropertyListRef CFPreferencesCopyAppValue(CFStringRef key, CFStringRef of)
{
    const auto found = preferences().constFind(textOf(key));
    return of == kCFPreferencesCurrentApplication && found != preferences().constEnd()
        ? made(*found)
        : nullptr;
}

void CFPreferencesSetAppValue(CFStringRef key, CFPropertyListRef value, CFStringRef of)
{
    if (of != kCFPreferencesCurrentApplication)
        return;
    if (value)
        preferences().insert(textOf(key), valueOf(value));
    else
        preferences().remove(textOf(key));
}

Boolean CFPreferencesAppSynchronize(CFStringRef of)
{
    if (of != kCFPreferencesCurrentApplication)
        return 0;
    written() = preferences();
    return 1;
}
