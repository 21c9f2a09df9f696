#include "platform/DesktopAppearance.h"

#include "platform/Worker.h"

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
constexpr QLatin1StringView contrast{"contrast"};

/// Whether there is a session bus to talk to. Without one the client library would try to start
/// one, which takes long and leaves a process behind.
bool hasSessionBus()
{
    if (qEnvironmentVariableIsSet("DBUS_SESSION_BUS_ADDRESS"))
        return true;
    const QString folder = qEnvironmentVariable("XDG_RUNTIME_DIR");
    return !folder.isEmpty() && QFileInfo::exists(folder + u"/bus"_s);
}

/// The setting's number. The portal wraps it in one variant or in two, depending on its age and on
/// the way it is asked.
uint numberIn(QVariant value)
{
    while (value.canConvert<QDBusVariant>())
        value = value.value<QDBusVariant>().variant();
    return value.toUInt();
}

} // namespace

DesktopAppearance::DesktopAppearance(QObject *parent)
    : QObject(parent)
{
    if (!hasSessionBus()) {
        m_isSettled = true;
        return;
    }
    // Whoever asks for the bus first waits until it has shaken hands, however long it takes.
    m_connecting = std::make_unique<Worker>();
    m_connecting->run([] { QDBusConnection::sessionBus(); }, this, [this] { connected(); });
}

void DesktopAppearance::connected()
{
    m_connecting.release()->deleteLater();
    if (!QDBusConnection::sessionBus().isConnected()) {
        settle();
        return;
    }
    listen();
    ask(colorScheme);
    ask(contrast);
}

void DesktopAppearance::listen()
{
    // Until it knows the type, the bus refuses a receiver that takes one.
    qRegisterMetaType<QDBusVariant>();
    auto bus = QDBusConnection::sessionBus();
    // The bus finds its receivers by name: it has no typed connect, and wants no spaces.
    // clang-format off
    const bool isListening =
        bus.connect(portalService, portalPath, portalSettings, u"SettingChanged"_s, this,
                    SLOT(settingChanged(QString,QString,QDBusVariant)));
    // clang-format on
    if (!isListening)
        qWarning("changes of the desktop's colours will not be seen: %s",
                 qPrintable(bus.lastError().message()));
}

void DesktopAppearance::ask(const QString &key)
{
    ++m_questions;
    auto question =
        QDBusMessage::createMethodCall(portalService, portalPath, portalSettings, u"Read"_s);
    question << QString(appearance) << key;
    auto *watcher =
        new QDBusPendingCallWatcher(QDBusConnection::sessionBus().asyncCall(question), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, watcher, key] {
        watcher->deleteLater();
        const QDBusPendingReply<QDBusVariant> reply = *watcher;
        if (reply.isValid())
            set(key, numberIn(reply.value().variant()));
        if (--m_questions == 0)
            settle();
    });
}

void DesktopAppearance::settingChanged(const QString &group, const QString &key,
                                       const QDBusVariant &value)
{
    if (group == appearance)
        set(key, numberIn(value.variant()));
}

void DesktopAppearance::set(const QString &key, uint value)
{
    State state = m_state;
    // 1 dark, 2 light; 1 more contrast: anything else is no preference.
    if (key == colorScheme)
        state.prefersDark = value == 1 || value == 2 ? std::optional(value == 1) : std::nullopt;
    else if (key == contrast)
        state.wantsContrast = value == 1;
    if (state == m_state)
        return;
    m_state = state;
    Q_EMIT changed();
}

#else

DesktopAppearance::DesktopAppearance(QObject *parent)
    : QObject(parent)
    , m_isSettled(true)
{
}

void DesktopAppearance::settingChanged(const QString &, const QString &, const QDBusVariant &) { }

#endif

void DesktopAppearance::settle()
{
    m_isSettled = true;
    Q_EMIT settled();
}

DesktopAppearance::~DesktopAppearance() = default;
