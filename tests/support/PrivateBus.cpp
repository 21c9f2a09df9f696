#include "support/PrivateBus.h"

#include <QDir>
#include <QFile>

#include <csignal>
#include <sys/prctl.h>

using namespace Qt::StringLiterals;

namespace {

/// Everybody may be asked anything, as on the bus of a desktop.
constexpr QLatin1StringView configuration{R"(<busconfig>
  <type>session</type>
  <listen>unix:dir=%1</listen>
  <auth>EXTERNAL</auth>
  <servicedir>%1/services</servicedir>
  <policy context="default">
    <allow send_destination="*" eavesdrop="true"/>
    <allow eavesdrop="true"/>
    <allow own="*"/>
  </policy>
</busconfig>
)"};

} // namespace

PrivateBus::PrivateBus(const QStringList &services)
{
    m_daemon.setProcessChannelMode(QProcess::SeparateChannels);
    m_daemon.setChildProcessModifier([] { prctl(PR_SET_PDEATHSIG, SIGTERM); });
    m_daemon.start(u"dbus-daemon"_s,
                   {u"--config-file="_s + writeConfiguration(services), u"--nofork"_s,
                    u"--nopidfile"_s, u"--nosyslog"_s, u"--print-address"_s});
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

QString PrivateBus::writeConfiguration(const QStringList &services) const
{
    const QDir folder(m_folder.path());
    folder.mkdir(u"services"_s);
    for (const QString &service : services) {
        const QString name = service + u".service"_s;
        if (!QFile::link(u"/usr/share/dbus-1/services/"_s + name,
                         folder.filePath(u"services/"_s + name)))
            qFatal("no place for the service %s", qPrintable(service));
    }
    QFile file(folder.filePath(u"bus.conf"_s));
    if (!file.open(QFile::WriteOnly)
        || file.write(QString(configuration).arg(folder.path()).toUtf8()) < 0)
        qFatal("the bus's configuration cannot be written");
    return file.fileName();
}
