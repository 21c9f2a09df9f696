#include "support/StandInPortal.h"

#include <QUuid>

#include <csignal>
#include <sys/prctl.h>

using namespace Qt::StringLiterals;

PrivateBus::PrivateBus()
{
    m_daemon.setProcessChannelMode(QProcess::SeparateChannels);
    m_daemon.setChildProcessModifier([] { prctl(PR_SET_PDEATHSIG, SIGTERM); });
    m_daemon.start(
        u"dbus-daemon"_s,
        {u"--session"_s, u"--nofork"_s, u"--nopidfile"_s, u"--nosyslog"_s, u"--print-address"_s});
    if (!m_daemon.waitForReadyRead(20'000))
        qFatal("dbus-daemon did not start: %s", m_daemon.readAllStandardError().constData());
    m_address = QString::fromLatin1(m_daemon.readLine()).trimmed();
    qputenv("DBUS_SESSION_BUS_ADDRESS", m_address.toLatin1());
}

PrivateBus::~PrivateBus()
{
    m_daemon.kill();
    m_daemon.waitForFinished();
}

StandInPortal::StandInPortal(const PrivateBus &bus, uint scheme)
    : m_connectionName(QUuid::createUuid().toString())
    , m_bus(QDBusConnection::connectToBus(bus.address(), m_connectionName))
    , m_scheme(scheme)
{
    m_bus.registerObject(u"/org/freedesktop/portal/desktop"_s, this,
                         QDBusConnection::ExportAllSlots | QDBusConnection::ExportAllSignals);
    if (!m_bus.registerService(u"org.freedesktop.portal.Desktop"_s))
        qFatal("the stand-in portal has no bus");
}

StandInPortal::~StandInPortal()
{
    QDBusConnection::disconnectFromBus(m_connectionName);
}

void StandInPortal::change(uint scheme)
{
    m_scheme = scheme;
    Q_EMIT SettingChanged(u"org.freedesktop.appearance"_s, u"color-scheme"_s, QDBusVariant(scheme));
}

void StandInPortal::answer()
{
    m_holds = false;
    for (const QDBusMessage &question : std::as_const(m_held))
        m_bus.send(question.createReply(
            QVariant::fromValue(QDBusVariant(QVariant::fromValue(QDBusVariant(m_scheme))))));
    m_held.clear();
}

QDBusVariant StandInPortal::Read(const QString &group, const QString &key)
{
    ++m_questions;
    if (group != u"org.freedesktop.appearance"_s || key != u"color-scheme"_s) {
        sendErrorReply(u"org.freedesktop.portal.Error.NotFound"_s, u"no such setting"_s);
        return {};
    }
    if (m_holds) {
        setDelayedReply(true);
        m_held.append(message());
        return {};
    }
    // This method of the portal wraps its answer twice.
    return QDBusVariant(QVariant::fromValue(QDBusVariant(m_scheme)));
}
