// The desktop's session ends while something typed is in a sheet. The window with the sheet is
// another process: this program, started by itself with one argument.

#include "support/SheetScene.h"
#include "support/StandInSessionManager.h"

#include <QApplication>
#include <QProcess>

#include <csignal>
#include <cstdio>
#include <sys/prctl.h>

using namespace Qt::StringLiterals;

namespace {

constexpr int patience = 60'000; ///< milliseconds; a busy machine is slow

void dieWithTest()
{
    prctl(PR_SET_PDEATHSIG, SIGKILL);
}

int runWindow(int argc, char *argv[])
{
    const QApplication application(argc, argv);
    const SheetScene it;
    it.sheet->setHolds(true);
    it.sheet->open();
    it.entry->setText(u"à garder"_s);
    std::puts("open");
    std::fflush(stdout);
    return QApplication::exec();
}

} // namespace

class TestSessionEnd : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup();
    void cleanupTestCase();

    void aLogoutIsNotHeldUp();
    void whatOnlyClosesTheProgramIs();

private:
    QProcess m_screen;
    QProcess m_window;
    StandInSessionManager m_manager;
};

void TestSessionEnd::initTestCase()
{
    m_screen.setChildProcessModifier(dieWithTest);
    m_screen.start(u"Xvfb"_s, {u"-displayfd"_s, u"1"_s, u"-nolisten"_s, u"tcp"_s});
    QVERIFY(m_screen.waitForReadyRead(patience));
    qputenv("DISPLAY", ":" + m_screen.readLine().trimmed());
    qputenv("SESSION_MANAGER", m_manager.address());
    qputenv("QT_QPA_PLATFORM", "xcb");
    // The session's manager is all that is wanted of a session; looked for, its bus would be
    // started.
    qputenv("DBUS_SESSION_BUS_ADDRESS", "disabled:");
    m_window.setChildProcessModifier(dieWithTest);
    m_window.setProcessChannelMode(QProcess::ForwardedErrorChannel);
}

void TestSessionEnd::init()
{
    m_window.start(QCoreApplication::applicationFilePath(), {u"window"_s});
    QTRY_VERIFY_WITH_TIMEOUT(m_window.canReadLine(), patience);
    QTRY_VERIFY_WITH_TIMEOUT(m_manager.hasMember(), patience);
}

void TestSessionEnd::cleanup()
{
    m_window.kill();
    m_window.waitForFinished();
}

void TestSessionEnd::cleanupTestCase()
{
    m_screen.terminate();
    m_screen.waitForFinished();
}

void TestSessionEnd::whatOnlyClosesTheProgramIs()
{
    m_manager.dismiss();
    constexpr int aWhile = 500; // what would end has had the time to
    QVERIFY(!m_window.waitForFinished(aWhile));
}

void TestSessionEnd::aLogoutIsNotHeldUp()
{
    m_manager.logOut();
    QTRY_COMPARE_WITH_TIMEOUT(m_window.state(), QProcess::NotRunning, patience);
    QCOMPARE(m_window.exitStatus(), QProcess::NormalExit);
    QCOMPARE(m_window.exitCode(), 0);
}

int main(int argc, char *argv[])
{
    if (argc > 1 && qstrcmp(argv[1], "window") == 0)
        return runWindow(argc, argv);
    const QCoreApplication application(argc, argv);
    TestSessionEnd test;
    return QTest::qExec(&test, argc, argv);
}
#include "test_session_end.moc"
