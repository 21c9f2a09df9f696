// Linked into a program of ours whose leaks are counted as it ends.
//
// A network manager waits for the work of its thread, not for the thread's last instructions. They
// give back what OpenSSL keeps for each thread; were the process to end amid them, that would be
// counted as lost.

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QThread>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

bool isThreadOfNetwork(const QString &thread)
{
    QFile name(u"/proc/self/task/%1/comm"_s.arg(thread));
    return name.open(QIODevice::ReadOnly) && name.readAll().startsWith("QNetworkAccess");
}

void waitForThreadsOfNetwork()
{
    const QDir tasks(u"/proc/self/task"_s);
    const auto areThere = [&tasks] {
        const QStringList threads = tasks.entryList(QDir::Dirs | QDir::NoDotAndDotDot);
        return std::any_of(threads.begin(), threads.end(), isThreadOfNetwork);
    };
    while (areThere())
        QThread::msleep(1);
}

void waitAtTheEnd()
{
    qAddPostRoutine(waitForThreadsOfNetwork);
}

} // namespace

Q_COREAPP_STARTUP_FUNCTION(waitAtTheEnd)
