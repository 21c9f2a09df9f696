// The program as it is installed, in a process of its own: what configures it, what it leaves.

#include "support/HttpServer.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

#include <csignal>
#include <memory>
#include <sched.h>
#include <sys/mount.h>
#include <sys/prctl.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

class TestInstalled : public QObject {
    Q_OBJECT

    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<HttpServer> m_server;
    QProcess m_program;

    QString path(const QString &name) const { return m_folder->filePath(name); }

    void write(const QString &name, const QByteArray &content) const
    {
        QVERIFY(QDir().mkpath(QFileInfo(path(name)).path()));
        QFile file(path(name));
        QVERIFY(file.open(QIODevice::WriteOnly));
        QCOMPARE(file.write(content), content.size());
    }

    QByteArray list(const QString &base, const QByteArray &key) const
    {
        return "<?xml version=\"1.0\"?><plist version=\"1.0\"><dict><key>SUPABASE_URL</key><string>"
            + base.toLatin1() + "</string><key>SUPABASE_KEY</key><string>" + key
            + "</string></dict></plist>";
    }

    QProcessEnvironment environment() const
    {
        auto environment = QProcessEnvironment::systemEnvironment();
        environment.remove(u"SUPABASE_URL"_s);
        environment.remove(u"SUPABASE_KEY"_s);
        environment.remove(u"DBUS_SESSION_BUS_ADDRESS"_s);
        environment.insert(u"XDG_CONFIG_HOME"_s, m_folder->path());
        environment.insert(u"XDG_RUNTIME_DIR"_s, m_folder->path());
        environment.insert(u"QT_QPA_PLATFORM"_s, u"offscreen"_s);
        return environment;
    }

private Q_SLOTS:
    void init()
    {
        m_folder = std::make_unique<QTemporaryDir>();
        m_server = std::make_unique<HttpServer>();
        m_program.setProcessChannelMode(QProcess::ForwardedChannels);
        m_program.setChildProcessModifier([] { prctl(PR_SET_PDEATHSIG, SIGKILL); });
        m_program.setProcessEnvironment(environment());
    }
    void cleanup()
    {
        m_program.kill();
        m_program.waitForFinished();
    }

    void itsListComesBeforeTheEnvironment()
    {
        write(u"share/amorvelle/Info.plist"_s, list(m_server->base(), "from-list"));
        QVERIFY(QDir(m_folder->path()).mkdir(u"bin"_s));
        QVERIFY(QFile::copy(QStringLiteral(AMORVELLE_PROGRAM), path(u"bin/amorvelle"_s)));
        auto misleading = environment();
        misleading.insert(u"SUPABASE_URL"_s, u"http://127.0.0.1:9"_s);
        misleading.insert(u"SUPABASE_KEY"_s, u"from-environment"_s);
        m_program.setProcessEnvironment(misleading);
        m_program.start(path(u"bin/amorvelle"_s), QStringList());
        QTRY_COMPARE_WITH_TIMEOUT(m_server->requests().size(), 1, 60'000);
        QCOMPARE(m_server->requests().constFirst().header("apikey"), "from-list");
    }

    void withoutAListTheEnvironmentCounts()
    {
        // Near, but not where it belongs.
        write(u"Info.plist"_s, list(u"http://127.0.0.1:9"_s, "from-list"));
        write(u"bin/Info.plist"_s, list(u"http://127.0.0.1:9"_s, "from-list"));
        QVERIFY(QFile::copy(QStringLiteral(AMORVELLE_PROGRAM), path(u"bin/amorvelle"_s)));
        auto told = environment();
        told.insert(u"SUPABASE_URL"_s, m_server->base());
        told.insert(u"SUPABASE_KEY"_s, u"from-environment"_s);
        m_program.setProcessEnvironment(told);
        m_program.start(path(u"bin/amorvelle"_s), QStringList());
        QTRY_COMPARE_WITH_TIMEOUT(m_server->requests().size(), 1, 60'000);
        QCOMPARE(m_server->requests().constFirst().header("apikey"), "from-environment");
    }

    void anUnreadableReplyIsLeftInTheSharedFolder()
    {
        // A shared folder that is the program's alone: what lies in the real one is somebody's.
        QVERIFY(QDir(m_folder->path()).mkdir(u"shared"_s));
        if (QStringLiteral(AMORVELLE_PROGRAM).startsWith(u"/tmp/"))
            QSKIP("the program itself is in the folder that would be hidden");
        auto told = environment();
        told.insert(u"SUPABASE_URL"_s, m_server->base());
        told.insert(u"SUPABASE_KEY"_s, u"k"_s);
        told.insert(u"XDG_CONFIG_HOME"_s, u"/tmp"_s);
        told.insert(u"XDG_RUNTIME_DIR"_s, u"/tmp"_s);
        m_program.setProcessEnvironment(told);
        m_program.setChildProcessModifier([shared = QFile::encodeName(path(u"shared"_s))] {
            prctl(PR_SET_PDEATHSIG, SIGKILL);
            if ((unshare(CLONE_NEWNS) != 0 && unshare(CLONE_NEWUSER | CLONE_NEWNS) != 0)
                || mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) != 0
                || mount(shared.constData(), "/tmp", nullptr, MS_BIND, nullptr) != 0)
                _exit(77);
        });
        m_server->answer(HttpAnswer::whole(200, "{\"un\": \"objet\"}"));
        m_program.start(QStringLiteral(AMORVELLE_PROGRAM), QStringList());
        const QString left = path(u"shared/events-response.json"_s);
        QTRY_VERIFY_WITH_TIMEOUT(QFile::exists(left) || m_program.state() == QProcess::NotRunning,
                                 60'000);
        if (m_program.state() == QProcess::NotRunning && m_program.exitCode() == 77)
            QSKIP("this host gives no program a folder of its own");
        QFile file(left);
        QVERIFY(file.open(QIODevice::ReadOnly));
        QCOMPARE(file.readAll(), "{\"un\": \"objet\"}");
    }
};

QTEST_GUILESS_MAIN(TestInstalled)
#include "test_installed.moc"
