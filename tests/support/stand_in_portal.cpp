// A desktop's settings portal as far as colours go, as a program: it serves on the bus that its
// first argument names, takes commands on its standard input and tells on its standard output what
// it was asked for. It ends with its input.

#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusContext>
#include <QDBusMessage>
#include <QDBusVariant>
#include <QHash>
#include <QSocketNotifier>

#include <cstdio>
#include <iostream>
#include <string>
#include <utility>

using namespace Qt::StringLiterals;

class Portal : public QObject, protected QDBusContext {
    Q_OBJECT

    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.portal.Settings")
public:
    Portal(QDBusConnection bus, uint scheme, uint contrast)
        : m_bus(std::move(bus))
        , m_values{{u"color-scheme"_s, scheme}, {u"contrast"_s, contrast}}
    {
    }

    void obey(const QStringList &command)
    {
        if (command.first() == u"hold"_s)
            m_holds = true;
        else if (command.first() == u"answer"_s)
            answerHeld();
        else
            tell(command.at(1), command.at(2), command.at(3).toUInt());
        std::cout << "done" << std::endl;
    }

public Q_SLOTS:
    // NOLINTNEXTLINE(readability-identifier-naming): the bus's name for it
    QDBusVariant Read(const QString &group, const QString &key)
    {
        std::cout << key.toStdString() << std::endl;
        if (group != u"org.freedesktop.appearance"_s || !m_values.contains(key)) {
            sendErrorReply(u"org.freedesktop.portal.Error.NotFound"_s, u"no such setting"_s);
        } else if (m_holds) {
            setDelayedReply(true);
            m_held.append({message(), key});
        }
        return QDBusVariant(answerFor(key));
    }

Q_SIGNALS:
    void SettingChanged(const QString &group, const QString &key, const QDBusVariant &value);

private:
    /// This method of the portal wraps its answer twice.
    QVariant answerFor(const QString &key) const
    {
        return QVariant::fromValue(QDBusVariant(m_values.value(key)));
    }

    void tell(const QString &group, const QString &key, uint value)
    {
        if (group == u"org.freedesktop.appearance"_s)
            m_values.insert(key, value);
        Q_EMIT SettingChanged(group, key, QDBusVariant(value));
    }

    void answerHeld()
    {
        m_holds = false;
        for (const auto &[question, key] : std::as_const(m_held))
            m_bus.send(question.createReply(QVariant::fromValue(QDBusVariant(answerFor(key)))));
        m_held.clear();
    }

    QDBusConnection m_bus;
    QHash<QString, uint> m_values;
    bool m_holds = false;
    QList<std::pair<QDBusMessage, QString>> m_held;
};

int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    auto bus = QDBusConnection::connectToBus(arguments.at(1), u"portal"_s);
    Portal portal(bus, arguments.at(2).toUInt(), arguments.at(3).toUInt());
    bus.registerObject(u"/org/freedesktop/portal/desktop"_s, &portal,
                       QDBusConnection::ExportAllSlots | QDBusConnection::ExportAllSignals);
    if (!bus.registerService(u"org.freedesktop.portal.Desktop"_s))
        qFatal("the stand-in portal has no bus");
    // Commands come one at a time, each after the former one's "done": no line waits in a buffer.
    const QSocketNotifier input(fileno(stdin), QSocketNotifier::Read);
    QObject::connect(&input, &QSocketNotifier::activated, &portal, [&portal] {
        std::string line;
        if (std::getline(std::cin, line))
            portal.obey(QString::fromStdString(line).split(u' '));
        else
            QCoreApplication::quit();
    });
    std::cout << "ready" << std::endl;
    return QCoreApplication::exec();
}
#include "stand_in_portal.moc"
