// The real program's start on a desktop that does not answer.

#include <QFile>
#include <QLocalServer>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

#include <csignal>
#include <fcntl.h>
#include <sys/prctl.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

class TestDesktopFonts : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void theyAreReadWhileTheDesktopIsAwaited();
};

void TestDesktopFonts::theyAreReadWhileTheDesktopIsAwaited()
{
    const QTemporaryDir folder;
    QLocalServer display;
    QVERIFY(display.listen(folder.filePath(u"display"_s)));
    // The desktop's list of fonts is a pipe: who writes into it learns that somebody reads.
    const QByteArray fonts = QFile::encodeName(folder.filePath(u"fonts"_s));
    QCOMPARE(mkfifo(fonts.constData(), 0600), 0);

    auto environment = QProcessEnvironment::systemEnvironment();
    environment.insert(u"QT_QPA_PLATFORM"_s, u"wayland"_s);
    environment.insert(u"WAYLAND_DISPLAY"_s, display.fullServerName());
    environment.insert(u"FONTCONFIG_FILE"_s, QString::fromLocal8Bit(fonts));
    QProcess program;
    program.setProcessEnvironment(environment);
    program.setChildProcessModifier([] { prctl(PR_SET_PDEATHSIG, SIGKILL); });
    program.start(QStringLiteral(AMORVELLE_PROGRAM), QStringList());

    // Nothing but its greeting has come from the program, and nothing is said to it.
    QTRY_VERIFY_WITH_TIMEOUT(display.hasPendingConnections(), 30'000);
    int pipe = -1;
    QTRY_VERIFY_WITH_TIMEOUT((pipe = open(fonts.constData(), O_WRONLY | O_NONBLOCK)) >= 0, 30'000);
    close(pipe);
    program.kill();
    QVERIFY(program.waitForFinished());
}

QTEST_GUILESS_MAIN(TestDesktopFonts)
#include "test_desktop_fonts.moc"
