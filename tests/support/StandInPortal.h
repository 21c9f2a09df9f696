#pragma once

#include <QDBusConnection>
#include <QDBusContext>
#include <QDBusMessage>
#include <QDBusVariant>
#include <QObject>
#include <QProcess>

/// A session bus of the test's own, so that no test talks to the desktop it runs on. The
/// environment names it to everything in this process from then on.
class PrivateBus {
public:
    PrivateBus();
    ~PrivateBus();
    PrivateBus(const PrivateBus &) = delete;
    PrivateBus &operator=(const PrivateBus &) = delete;

    const QString &address() const { return m_address; }

private:
    QProcess m_daemon;
    QString m_address;
};

/// A desktop's settings portal as far as it tells light from dark.
class StandInPortal : public QObject, protected QDBusContext {
    Q_OBJECT

    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.portal.Settings")
public:
    /// `scheme`: 0 no preference, 1 dark, 2 light.
    StandInPortal(const PrivateBus &bus, uint scheme);
    ~StandInPortal() override;

    /// The desktop's user switches: tells all listeners.
    void change(uint scheme);
    /// From now on questions wait until answer() is called.
    void holdAnswers() { m_holds = true; }
    void answer();
    int questions() const { return m_questions; }

public Q_SLOTS:
    // NOLINTNEXTLINE(readability-identifier-naming): the bus's name for it
    QDBusVariant Read(const QString &group, const QString &key);

Q_SIGNALS:
    void SettingChanged(const QString &group, const QString &key, const QDBusVariant &value);

private:
    QString m_connectionName;
    QDBusConnection m_bus;
    uint m_scheme;
    bool m_holds = false;
    int m_questions = 0;
    QList<QDBusMessage> m_held;
};
