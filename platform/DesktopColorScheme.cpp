#include "platform/DesktopColorScheme.h"

#include <QMetaObject>
#include <QString>

#ifdef Q_OS_LINUX
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusVariant>
#include <QFileInfo>

using namespace Qt::StringLiterals;

namespace {

constexpr QLatin1StringView portalService{"org.freedesktop.portal.Desktop"};
constexpr QLatin1StringView portalPath{"/org/freedesktop/portal/desktop"};
constexpr QLatin1StringView portalSettings{"org.freedesktop.portal.Settings"};
constexpr QLatin1StringView appearance{"org.freedesktop.appearance"};
constexpr QLatin1StringView colorScheme{"color-scheme"};

/// Whether there is a session bus to talk to. Without one the client library would try to start
/// one, which takes long and leaves a process behind.
bool hasSessionBus()
{
    if (qEnvironmentVariableIsSet("DBUS_SESSION_BUS_ADDRESS"))
        return true;
    const QString folder = qEnvironmentVariable("XDG_RUNTIME_DIR");
    return !folder.isEmpty() && QFileInfo::exists(folder + u"/bus"_s);
}

/// What the setting's number says: 1 dark, 2 light, anything else no preference. The portal wraps
/// it in one variant or in two, depending on its age and on the way it is asked.
std::optional<bool> preference(QVariant value)
{
    while (value.canConvert<QDBusVariant>())
        value = value.value<QDBusVariant>().variant();
    switch (value.toUInt()) {
    case 1:
        return true;
    case 2:
        return false;
    default:
        return {};
    }
}

} // namespace

DesktopColorScheme::DesktopColorScheme(QObject *parent)
    : QObject(parent)
{
    if (hasSessionBus())
        ask();
    else
        QMetaObject::invokeMethod(this, &DesktopColorScheme::settled, Qt::QueuedConnection);
}

void DesktopColorScheme::ask()
{
    auto bus = QDBusConnection::sessionBus();
    // The bus finds its receivers by name: it has no typed connect, and wants no spaces.
    // clang-format off
    bus.connect(portalService, portalPath, portalSettings, u"SettingChanged"_s, this,
                SLOT(settingChanged(QString,QString,QDBusVariant)));
    // clang-format on

    auto question =
        QDBusMessage::createMethodCall(portalService, portalPath, portalSettings, u"Read"_s);
    question << QString(appearance) << QString(colorScheme);
    auto *watcher = new QDBusPendingCallWatcher(bus.asyncCall(question), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, watcher] {
        watcher->deleteLater();
        const QDBusPendingReply<QDBusVariant> reply = *watcher;
        if (reply.isValid())
            set(preference(reply.value().variant()));
        Q_EMIT settled();
    });
}

void DesktopColorScheme::settingChanged(const QString &group, const QString &key,
                                        const QDBusVariant &value)
{
    if (group == appearance && key == colorScheme)
        set(preference(value.variant()));
}

#else

DesktopColorScheme::DesktopColorScheme(QObject *parent)
    : QObject(parent)
{
    QMetaObject::invokeMethod(this, &DesktopColorScheme::settled, Qt::QueuedConnection);
}

void DesktopColorScheme::settingChanged(const QString &, const QString &, const QDBusVariant &) { }

#endif

void DesktopColorScheme::set(std::optional<bool> prefersDark)
{
    if (prefersDark == m_prefersDark)
        return;
    m_prefersDark = prefersDark;
    Q_EMIT changed();
}
