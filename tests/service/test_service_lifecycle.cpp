#include "support/LocalService.h"
#include "support/ServiceClient.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QTest>
#include <QUrl>

#include <csignal>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

bool isAlive(qint64 process)
{
    QFile status(u"/proc/%1/stat"_s.arg(process));
    return status.open(QIODevice::ReadOnly) && !status.readAll().contains(") Z ");
}

/// Local addresses of the TCP sockets on which a process listens, as the kernel writes them.
QStringList listeningAddresses(qint64 process)
{
    QStringList inodes;
    const QDir descriptors(u"/proc/%1/fd"_s.arg(process));
    for (const QString &name : descriptors.entryList(QDir::System | QDir::Files)) {
        QByteArray target(256, '\0');
        const auto size =
            readlink(QFile::encodeName(descriptors.filePath(name)).constData(), target.data(), 255);
        if (size > 0 && target.startsWith("socket:["))
            inodes.append(QString::fromLatin1(target.mid(8, target.indexOf(']') - 8)));
    }
    QStringList addresses;
    for (const char *table : {"tcp", "tcp6"}) {
        QFile file(u"/proc/net/"_s + QLatin1StringView(table));
        file.open(QIODevice::ReadOnly);
        const QStringList lines = QString::fromLatin1(file.readAll()).split(u'\n');
        for (const QString &line : lines) {
            const QStringList fields = line.simplified().split(u' ');
            if (fields.value(3) == u"0A" && inodes.contains(fields.value(9)))
                addresses.append(fields.value(1));
        }
    }
    return addresses;
}

/// Runs a program as the database's user.
bool runAsDatabaseUser(const QStringList &command)
{
    const QStringList asUser{u"setpriv"_s, u"--reuid=postgres"_s, u"--regid=postgres"_s,
                             u"--clear-groups"_s};
    const QStringList all = geteuid() == 0 ? asUser + command : command;
    return QProcess::execute(all.first(), all.mid(1)) == 0;
}

/// One of the database's own programs, of whichever version is installed.
QString serverProgram(const QString &name)
{
    QProcess asked;
    asked.start(u"pg_config"_s, {u"--bindir"_s});
    asked.waitForFinished();
    return QDir(QString::fromLocal8Bit(asked.readAllStandardOutput().trimmed())).filePath(name);
}

} // namespace

class TestServiceLifecycle : public QObject {
    Q_OBJECT

private:
    QByteArray list()
    {
        return exchange(m_service.url(), "GET", "/rest/v1/events?order=id",
                        {{"apikey", m_service.key().toLatin1()}})
            .body;
    }

    LocalService m_service;

private Q_SLOTS:
    void init()
    {
        if (!m_service.isRunning())
            QVERIFY(m_service.start());
    }
    void cleanupTestCase() { QVERIFY2(m_service.stop(), qPrintable(m_service.output())); }

    void nothingListensBeyondThisMachine()
    {
        const QString port = QString::number(QUrl(m_service.url()).port(), 16).toUpper();
        QCOMPARE(listeningAddresses(m_service.processId()),
                 QStringList{u"0100007F:"_s + port.rightJustified(4, u'0')});
        QVERIFY(m_service.databaseProcessId() > 0);
        QCOMPARE(listeningAddresses(m_service.databaseProcessId()), QStringList());
    }

    void theKeysAreForTheirOwnerAlone()
    {
        const auto others = QFile::ReadGroup | QFile::WriteGroup | QFile::ExeGroup
            | QFile::ReadOther | QFile::WriteOther | QFile::ExeOther;
        const QString keys = m_service.dataFolder() + u"/keys.json"_s;
        QVERIFY(QFile::exists(keys));
        QVERIFY(!(QFile::permissions(keys) & others));
        QVERIFY(!(QFile::permissions(m_service.socketFolder()) & others));
    }

    void anotherRunHasTheSameKeyAndTheSameRows()
    {
        const QString key = m_service.key();
        const QByteArray rows = list();
        QVERIFY(rows.size() > 10'000);
        QVERIFY(m_service.stop());
        QVERIFY(m_service.start());
        QCOMPARE(m_service.key(), key);
        QCOMPARE(list(), rows);
    }

    void theDatabaseEndsWithTheService()
    {
        const qint64 database = m_service.databaseProcessId();
        QVERIFY(isAlive(database));
        QVERIFY(m_service.stop());
        QVERIFY(!isAlive(database));
    }

    void theDatabaseEndsWithAKilledServiceAndIsThereAgainAfterwards()
    {
        const QByteArray rows = list();
        const qint64 database = m_service.databaseProcessId();
        m_service.kill();
        QTRY_VERIFY_WITH_TIMEOUT(!isAlive(database), 20'000);
        QVERIFY(m_service.start());
        QCOMPARE(list(), rows);
    }

    void aNewStartDoesNotWaitForTheOldDatabaseToEnd()
    {
        const QByteArray rows = list();
        m_service.kill();
        QVERIFY(m_service.start());
        QCOMPARE(list(), rows);
    }

    void killingBothLosesNothing()
    {
        const QByteArray rows = list();
        const qint64 database = m_service.databaseProcessId();
        m_service.kill();
        ::kill(static_cast<pid_t>(database), SIGKILL);
        QVERIFY(m_service.start());
        QVERIFY(m_service.databaseProcessId() != database);
        QCOMPARE(list(), rows);
    }

    void aDatabaseLeftOnTheFolderIsReplaced()
    {
        const QByteArray rows = list();
        const QString socket = m_service.socketFolder();
        QVERIFY(m_service.stop());
        const QString cluster = m_service.dataFolder() + u"/cluster"_s;
        QVERIFY(runAsDatabaseUser({serverProgram(u"pg_ctl"_s), u"-D"_s, cluster, u"-o"_s,
                                   u"-c listen_addresses= -k "_s + socket, u"-l"_s, u"/dev/null"_s,
                                   u"-w"_s, u"-s"_s, u"start"_s}));
        const qint64 orphan = m_service.databaseProcessId();
        QVERIFY(isAlive(orphan));
        QVERIFY(m_service.start());
        QVERIFY(!isAlive(orphan));
        QCOMPARE(list(), rows);
    }

    void aNoteThatNamesAStrangerHarmsNobody()
    {
        QVERIFY(m_service.stop());
        QFile note(m_service.dataFolder() + u"/cluster/postmaster.pid"_s);
        QVERIFY(note.open(QIODevice::WriteOnly));
        QProcess stranger;
        stranger.start(u"sleep"_s, {u"600"_s});
        QVERIFY(stranger.waitForStarted());
        note.write(QByteArray::number(stranger.processId()) + "\n/elsewhere\n1\n5432\n/tmp\n");
        note.close();
        QVERIFY(m_service.start());
        QCOMPARE(stranger.state(), QProcess::Running);
        QVERIFY(isAlive(stranger.processId()));
        stranger.kill();
        stranger.waitForFinished();
    }

    void aSecondServiceOnTheSameFolderIsRefused()
    {
        QProcess second;
        second.start(u"/proc/%1/exe"_s.arg(m_service.processId()),
                     {u"--data"_s, m_service.dataFolder()});
        QVERIFY(second.waitForFinished());
        QCOMPARE(second.exitCode(), 1);
        QVERIFY(second.readAllStandardError().contains("another amorvelle-service uses "));
        QVERIFY(list().size() > 10'000);
    }

    void aFolderThatTheDatabaseCannotReachIsNamed()
    {
        if (geteuid() != 0)
            QSKIP("only root runs the database as somebody else");
        QTemporaryDir closed;
        QProcess service;
        service.start(u"/proc/%1/exe"_s.arg(m_service.processId()),
                      {u"--data"_s, closed.filePath(u"data"_s)});
        QVERIFY(service.waitForFinished());
        QCOMPARE(service.exitCode(), 1);
        const QByteArray message = service.readAllStandardError();
        QVERIFY2(message.contains("may not enter " + QFile::encodeName(closed.path()) + ';'),
                 message);
    }

    void aFolderWithALongNameServesToo()
    {
        QTemporaryDir folder;
        QFile::setPermissions(folder.path(), QFile::permissions(folder.path()) | QFile::ExeOther);
        QProcess service;
        const QString ready = folder.filePath(u"ready"_s);
        service.start(u"/proc/%1/exe"_s.arg(m_service.processId()),
                      {u"--data"_s, folder.filePath(QString(120, u'x')), u"--ready-file"_s, ready});
        QTRY_VERIFY_WITH_TIMEOUT(QFile::exists(ready), 60'000);
        service.terminate();
        QVERIFY(service.waitForFinished());
        QCOMPARE(service.exitCode(), 0);
    }

    void theServiceEndsWhenItsDatabaseDoes()
    {
        ::kill(static_cast<pid_t>(m_service.databaseProcessId()), SIGKILL);
        QTRY_VERIFY_WITH_TIMEOUT(!m_service.isRunning(), 20'000);
        QVERIFY(m_service.output().contains(u"the database has ended unexpectedly"));
        QVERIFY(m_service.start());
    }
};

QTEST_GUILESS_MAIN(TestServiceLifecycle)
#include "test_service_lifecycle.moc"
