#include "support/LocalService.h"

#include <QDeadlineTimer>
#include <QDebug>
#include <QFile>
#include <QThread>

#include <csignal>
#include <sys/prctl.h>

using namespace Qt::StringLiterals;

#ifdef __SANITIZE_THREAD__
// What is watched in these tests is the service, a process of its own. The test is only its client
// and has no thread but those of the distribution's Qt, which the sanitizer cannot see into.
extern "C" const char *__tsan_default_options();

extern "C" const char *__tsan_default_options()
{
    return "ignore_noninstrumented_modules=1";
}
#endif

namespace {

QList<QByteArray> linesOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll().split('\n') : QList<QByteArray>();
}

} // namespace

LocalService::LocalService(const QStringList &options)
    : m_options(options)
{
    // The database does not run as root; its user has to pass through.
    QFile::setPermissions(m_folder.path(),
                          QFile::permissions(m_folder.path()) | QFile::ExeOther | QFile::ExeGroup);
    m_process.setProgram(QStringLiteral(AMORVELLE_SERVICE_PROGRAM));
    m_process.setProcessChannelMode(QProcess::MergedChannels);
    m_process.setChildProcessModifier([] { prctl(PR_SET_PDEATHSIG, SIGTERM); });
    if (!start())
        qWarning().noquote() << "the local service does not start:" << output();
}

LocalService::~LocalService()
{
    stop();
}

bool LocalService::start()
{
    m_url.clear();
    QFile::remove(readyFile());
    m_process.setArguments(QStringList{u"--data"_s, dataFolder(), u"--ready-file"_s, readyFile()}
                           + m_options);
    m_process.start();
    QDeadlineTimer patience(90'000);
    while (!QFile::exists(readyFile())) {
        // Also reads what it writes, so that it never waits for us.
        if (m_process.waitForFinished(10) || m_process.state() == QProcess::NotRunning
            || patience.hasExpired()) {
            return false;
        }
    }
    for (const QByteArray &line : linesOf(readyFile())) {
        if (line.startsWith("SUPABASE_URL="))
            m_url = QString::fromUtf8(line.mid(13));
        else if (line.startsWith("SUPABASE_KEY="))
            m_key = QString::fromUtf8(line.mid(13));
    }
    return isRunning();
}

bool LocalService::stop()
{
    if (m_process.state() == QProcess::NotRunning)
        return true;
    m_process.terminate();
    return m_process.waitForFinished() && m_process.exitStatus() == QProcess::NormalExit
        && m_process.exitCode() == 0;
}

void LocalService::kill()
{
    m_process.kill();
    m_process.waitForFinished();
}

QString LocalService::output()
{
    m_process.waitForReadyRead(0);
    m_output += m_process.readAll();
    return QString::fromUtf8(m_output);
}

qint64 LocalService::databaseProcessId() const
{
    return linesOf(dataFolder() + u"/cluster/postmaster.pid"_s).value(0).toLongLong();
}

QString LocalService::socketFolder() const
{
    return QString::fromUtf8(linesOf(dataFolder() + u"/cluster/postmaster.pid"_s).value(4));
}
