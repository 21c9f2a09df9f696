// The real program's last moments, seen from another process.

#include "support/TestCertificates.h"
#include "support/TlsServer.h"

#include <QDateTime>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

#include <csignal>
#include <sched.h>
#include <sys/mount.h>
#include <sys/prctl.h>

using namespace Qt::StringLiterals;

class TestExit : public QObject {
    Q_OBJECT

    QTemporaryDir m_folder;

    /// Starts the program in a world of its own, where the system trusts the tests' authority.
    void start(QProcess &program, const TlsServer &server, const QString &close)
    {
        auto environment = QProcessEnvironment::systemEnvironment();
        environment.insert(u"SUPABASE_URL"_s, server.base());
        environment.insert(u"SUPABASE_KEY"_s, u"clef"_s);
        environment.insert(u"XDG_CONFIG_HOME"_s, m_folder.path());
        environment.insert(u"XDG_RUNTIME_DIR"_s, m_folder.path());
        environment.remove(u"DBUS_SESSION_BUS_ADDRESS"_s);
        environment.insert(u"QT_QPA_PLATFORM"_s, u"offscreen"_s);
        environment.insert(u"CLOSE"_s, close);
        environment.insert(u"LC_ALL"_s, u"C.UTF-8"_s); // one not installed is warned of
        program.setProcessEnvironment(environment);
        program.setChildProcessModifier(
            [trusted = QFile::encodeName(m_folder.filePath(u"certs"_s))] {
                prctl(PR_SET_PDEATHSIG, SIGKILL);
                if (unshare(CLONE_NEWNS) != 0 && unshare(CLONE_NEWUSER | CLONE_NEWNS) != 0)
                    return;
                mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr);
                mount(trusted.constData(), "/etc/ssl/certs", nullptr, MS_BIND, nullptr);
            });
        program.start(QStringLiteral(AMORVELLE_CLOSING_PROGRAM), QStringList());
    }

private Q_SLOTS:
    void initTestCase()
    {
        QVERIFY(QDir(m_folder.path()).mkdir(u"certs"_s));
        QFile file(
            m_folder.filePath(u"certs/"_s + QLatin1StringView(TestCertificates::nameOfAuthority)));
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(TestCertificates::authority);
    }

    void overHttpsTheProgramEndsWithoutAWord_data()
    {
        QTest::addColumn<QByteArray>("answer");
        QTest::addColumn<QString>("close");
        const QByteArray row = "{\"id\":\"1\",\"titre\":\"Bal\",\"starts_at\":\""
            + QDateTime::currentDateTimeUtc().addDays(3).toString(Qt::ISODate).toLatin1() + "\"}";
        const QByteArray reply = "HTTP/1.1 200 OK\r\nContent-Length: "
            + QByteArray::number(row.size() + 2) + "\r\n\r\n[" + row + ']';
        QTest::newRow("with what it asked for") << reply << u"shown"_s;
        QTest::newRow("at once") << reply << u"at once"_s;
        QTest::newRow("before an answer") << QByteArray() << u"told"_s;
        QTest::newRow("amid an answer")
            << "HTTP/1.1 200 OK\r\nContent-Length: 9\r\n\r\n["_ba << u"told"_s;
    }

    void overHttpsTheProgramEndsWithoutAWord()
    {
        QFETCH(QByteArray, answer);
        QFETCH(QString, close);
        TlsServer server(TestCertificates::rightful);
        server.answer(answer);
        for (int i = 0; i < 10; ++i) {
            QProcess program;
            start(program, server, close);
            if (close == u"told") {
                QTRY_COMPARE_WITH_TIMEOUT(server.requests(), i + 1, 60'000);
                kill(static_cast<pid_t>(program.processId()), SIGUSR1);
            }
            QTRY_COMPARE_WITH_TIMEOUT(program.state(), QProcess::NotRunning, 60'000);
            QCOMPARE(QString::fromUtf8(program.readAllStandardError()), QString());
            QCOMPARE(program.exitStatus(), QProcess::NormalExit);
            QCOMPARE(program.exitCode(), 0);
        }
        if (close != u"at once")
            QCOMPARE(server.requests(), 10);
    }
};

QTEST_GUILESS_MAIN(TestExit)
#include "test_exit.moc"
