#include "support/AtSpi.h"

#include <QDBusArgument>
#include <QDBusMetaType>
#include <QDBusReply>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace AtSpi {

namespace {

    constexpr int patience = 60'000; ///< milliseconds; a program under a sanitizer takes its time

    const QString &accessibleInterface()
    {
        static const QString name = u"org.a11y.atspi.Accessible"_s;
        return name;
    }

    const QString &actionInterface()
    {
        static const QString name = u"org.a11y.atspi.Action"_s;
        return name;
    }

    const QString &registryName()
    {
        static const QString name = u"org.a11y.atspi.Registry"_s;
        return name;
    }

    template <typename T>
    T firstOf(const QDBusMessage &answer)
    {
        if (answer.type() != QDBusMessage::ReplyMessage || answer.arguments().isEmpty())
            return {};
        return qdbus_cast<T>(answer.arguments().constFirst());
    }

    void registerTypes()
    {
        qDBusRegisterMetaType<Reference>();
        qDBusRegisterMetaType<QList<Reference>>();
        qDBusRegisterMetaType<QList<uint>>();
    }

} // namespace

static QDBusArgument &operator<<(QDBusArgument &argument, const Reference &reference)
{
    argument.beginStructure();
    argument << reference.bus << reference.path;
    argument.endStructure();
    return argument;
}

static const QDBusArgument &operator>>(const QDBusArgument &argument, Reference &reference)
{
    argument.beginStructure();
    argument >> reference.bus >> reference.path;
    argument.endStructure();
    return argument;
}

Object Object::program(const QDBusConnection &bus, const QString &name)
{
    registerTypes();
    const Object root(bus, {registryName(), QDBusObjectPath(u"/org/a11y/atspi/accessible/root"_s)});
    const auto programs = root.children();
    const auto found = std::find_if(programs.begin(), programs.end(),
                                    [&](const Object &object) { return object.name() == name; });
    return found == programs.end() ? Object() : *found;
}

bool Object::isValid() const
{
    // The protocol's way to say "none" is a path that ends thus.
    return !m_reference.bus.isEmpty()
        && !m_reference.path.path().endsWith(QLatin1StringView("/null"));
}

Role Object::role() const
{
    return Role(firstOf<uint>(ask(accessibleInterface(), u"GetRole"_s)));
}

QString Object::name() const
{
    return property(accessibleInterface(), u"Name"_s).toString();
}

QString Object::description() const
{
    return property(accessibleInterface(), u"Description"_s).toString();
}

bool Object::has(State state) const
{
    const auto words = firstOf<QList<uint>>(ask(accessibleInterface(), u"GetState"_s));
    constexpr uint bits = 32;
    const auto number = static_cast<uint>(state);
    return ((words.value(number / bits) >> (number % bits)) & 1U) != 0;
}

QRect Object::place() const
{
    constexpr uint ofScreen = 0;
    const auto answer = ask(u"org.a11y.atspi.Component"_s, u"GetExtents"_s, {ofScreen});
    if (answer.type() != QDBusMessage::ReplyMessage || answer.arguments().isEmpty())
        return {};
    const auto extents = answer.arguments().constFirst().value<QDBusArgument>();
    int x = 0;
    int y = 0;
    int width = 0;
    int height = 0;
    extents.beginStructure();
    extents >> x >> y >> width >> height;
    extents.endStructure();
    return {x, y, width, height};
}

Object Object::parent() const
{
    return {m_bus, qdbus_cast<Reference>(property(accessibleInterface(), u"Parent"_s))};
}

int Object::indexInParent() const
{
    const QDBusReply<int> index = ask(accessibleInterface(), u"GetIndexInParent"_s);
    return index.isValid() ? index.value() : -1;
}

int Object::childCount() const
{
    return property(accessibleInterface(), u"ChildCount"_s).toInt();
}

Object Object::child(int index) const
{
    return {m_bus, firstOf<Reference>(ask(accessibleInterface(), u"GetChildAtIndex"_s, {index}))};
}

QList<Object> Object::children() const
{
    const auto references = firstOf<QList<Reference>>(ask(accessibleInterface(), u"GetChildren"_s));
    QList<Object> objects;
    for (const Reference &reference : references)
        objects.append(Object(m_bus, reference));
    return objects;
}

QStringList Object::actions() const
{
    const int count = property(actionInterface(), u"NActions"_s).toInt();
    QStringList names;
    for (int i = 0; i < count; ++i)
        names.append(firstOf<QString>(ask(actionInterface(), u"GetName"_s, {i})));
    return names;
}

bool Object::act(const QString &action) const
{
    const auto index = actions().indexOf(action);
    return index >= 0 && firstOf<bool>(ask(actionInterface(), u"DoAction"_s, {int(index)}));
}

bool Object::enter(const QString &text) const
{
    return firstOf<bool>(ask(u"org.a11y.atspi.EditableText"_s, u"SetTextContents"_s, {text}));
}

bool Object::grabFocus() const
{
    return firstOf<bool>(ask(u"org.a11y.atspi.Component"_s, u"GrabFocus"_s));
}

Object Object::find(const std::function<bool(const Object &)> &isWanted) const
{
    const auto below = children();
    for (const Object &object : below) {
        if (!object.has(State::Showing))
            continue;
        if (isWanted(object))
            return object;
        if (object.role() == Role::List)
            continue;
        const Object found = object.find(isWanted);
        if (found.isValid())
            return found;
    }
    return {};
}

Object Object::find(Role role, const QString &name) const
{
    return find(
        [&](const Object &object) { return object.role() == role && object.name() == name; });
}

Object Object::find(Role role) const
{
    return find([&](const Object &object) { return object.role() == role; });
}

QDBusMessage Object::ask(const QString &interface, const QString &method,
                         const QVariantList &arguments) const
{
    if (!isValid())
        return {};
    auto question =
        QDBusMessage::createMethodCall(m_reference.bus, m_reference.path.path(), interface, method);
    question.setArguments(arguments);
    return m_bus.call(question, QDBus::Block, patience);
}

QVariant Object::property(const QString &interface, const QString &name) const
{
    const auto answer = ask(u"org.freedesktop.DBus.Properties"_s, u"Get"_s, {interface, name});
    return firstOf<QDBusVariant>(answer).variant();
}

Listener::Listener(const QDBusConnection &bus)
    : m_bus(bus)
{
    registerTypes();
    // The bus finds its receivers by name: it has no typed connect.
    m_bus.connect(QString(), QString(), u"org.a11y.atspi.Event.Object"_s, u"StateChanged"_s, this,
                  SLOT(hear(QDBusMessage)));
    auto wish = QDBusMessage::createMethodCall(registryName(), u"/org/a11y/atspi/registry"_s,
                                               registryName(), u"RegisterEvent"_s);
    wish << u"object:state-changed"_s;
    const QDBusMessage answer = m_bus.call(wish, QDBus::Block, patience);
    if (answer.type() == QDBusMessage::ErrorMessage)
        qFatal("the registry takes no listener: %s", qPrintable(answer.errorMessage()));
}

bool Listener::hasHeard(const Object &source, const QString &kind) const
{
    return std::any_of(m_heard.begin(), m_heard.end(), [&](const Heard &heard) {
        return heard.source == source.reference() && heard.kind == kind && heard.value != 0;
    });
}

void Listener::hear(const QDBusMessage &message)
{
    const auto arguments = message.arguments();
    m_heard.append({{message.service(), QDBusObjectPath(message.path())},
                    arguments.value(0).toString(),
                    arguments.value(1).toInt()});
}

} // namespace AtSpi
