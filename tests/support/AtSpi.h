#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QList>
#include <QRect>
#include <QStringList>

#include <functional>

/// What a screen reader knows of a program: what AT-SPI, the desktop's accessibility protocol,
/// tells over its bus, and nothing else.
namespace AtSpi {

/// The protocol's numbers.
enum class Role : uint {
    Alert = 2,
    Dialog = 16,
    Filler = 20,
    Frame = 23,
    Label = 29,
    List = 31,
    ListItem = 32,
    PageTab = 37,
    PageTabList = 38,
    Panel = 39,
    PushButton = 43,
    Text = 61,
    Heading = 83,
    Link = 88,
    Notification = 101,
};

enum class State : uint {
    Active = 1,
    Expandable = 9,
    Expanded = 10,
    Focused = 12,
    Modal = 16,
    Selected = 23,
    Showing = 25,
};

/// An object's address, as the protocol hands it round.
struct Reference {
    QString bus;
    QDBusObjectPath path;

    bool operator==(const Reference &other) const = default;
};

/// One object of a program. Each question goes to the program and waits for its answer; one that
/// the program cannot answer reads as empty.
class Object {
public:
    Object() = default;
    Object(const QDBusConnection &bus, const Reference &reference)
        : m_bus(bus)
        , m_reference(reference)
    {
    }

    /// The program that shows itself under this name on the bus; an invalid object before it does.
    static Object program(const QDBusConnection &bus, const QString &name);

    bool isValid() const;
    const Reference &reference() const { return m_reference; }
    bool operator==(const Object &other) const { return m_reference == other.m_reference; }

    Role role() const;
    QString name() const;
    QString description() const;
    bool has(State state) const;

    /// Where it is, in what the program takes for the screen's pixels.
    QRect place() const;

    Object parent() const;
    int indexInParent() const;
    int childCount() const;
    Object child(int index) const;
    QList<Object> children() const;

    QStringList actions() const;
    /// Does the action of this name; whether there is one.
    bool act(const QString &action) const;
    /// Puts a text into an entry field in place of what it holds; whether the program took it.
    bool enter(const QString &text) const;
    /// Gives it the keyboard focus; whether the program says that it did.
    bool grabFocus() const;

    /// The first object below this one, in the order of reading, that `isWanted` and that shows.
    /// A list is not entered: it may be long.
    Object find(const std::function<bool(const Object &)> &isWanted) const;
    Object find(Role role, const QString &name) const;
    Object find(Role role) const;

private:
    QDBusMessage ask(const QString &interface, const QString &method,
                     const QVariantList &arguments = {}) const;
    QVariant property(const QString &interface, const QString &name) const;

    QDBusConnection m_bus{QString()};
    Reference m_reference;
};

/// What programs tell readers of their own accord.
class Listener : public QObject {
    Q_OBJECT

public:
    struct Heard {
        Reference source;
        QString kind; ///< as in "focused"
        int value; ///< 1: has begun, 0: has ended
    };

    /// Asks to be told of changes of state; programs that start later tell them from the first on.
    explicit Listener(const QDBusConnection &bus);

    const QList<Heard> &heard() const { return m_heard; }
    void forget() { m_heard.clear(); }
    /// Whether something of this state was told to have begun.
    bool hasHeard(const Object &source, const QString &kind) const;

private Q_SLOTS:
    void hear(const QDBusMessage &message);

private:
    QDBusConnection m_bus;
    QList<Heard> m_heard;
};

} // namespace AtSpi

Q_DECLARE_METATYPE(AtSpi::Reference)
