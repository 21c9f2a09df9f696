// The application beside the settings portal that Debian's desktops have, each of its parts a
// program of its own: the desktop's settings are changed by the desktop's own command. The other
// tests have a stand-in for it, which can also be slow, silent and wrong.

#include "app/OstreloApp.h"
#include "backend/SupabaseClient.h"
#include "browse/ContentView.h"
#include "look/Colors.h"
#include "support/PrivateBus.h"
#include "support/VirtualScreen.h"

#include <QApplication>
#include <QDir>
#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

constexpr int patience = 20'000; ///< milliseconds; a busy machine under a sanitizer is slow

const QStringList &services()
{
    static const QStringList names{
        u"org.freedesktop.portal.Desktop"_s, u"org.freedesktop.impl.portal.desktop.gtk"_s,
        u"org.freedesktop.impl.portal.PermissionStore"_s, u"ca.desrt.dconf"_s};
    return names;
}

/// What this machine lacks.
QStringList missing()
{
    QStringList names;
    for (const QString &program : {u"gsettings"_s, u"gdbus"_s, u"Xvfb"_s}) {
        if (QStandardPaths::findExecutable(program).isEmpty())
            names.append(program);
    }
    for (const QString &service : services()) {
        if (!QFile::exists(u"/usr/share/dbus-1/services/%1.service"_s.arg(service)))
            names.append(service);
    }
    return names;
}

/// What a command of the desktop answers; nothing where it fails.
QString answerOf(const QString &program, const QStringList &arguments)
{
    QProcess process;
    process.start(program, arguments);
    if (!process.waitForFinished(patience) || process.exitCode() != 0)
        return {};
    return QString::fromUtf8(process.readAllStandardOutput()).trimmed();
}

void set(const QString &schema, const QString &key, const QString &value)
{
    QProcess process;
    process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    process.start(u"gsettings"_s, {u"set"_s, schema, key, value});
    QVERIFY(process.waitForFinished(patience));
    QCOMPARE(process.exitCode(), 0);
}

void setColors(const QString &value)
{
    set(u"org.gnome.desktop.interface"_s, u"color-scheme"_s, value);
}

QString portalsAnswer(const QString &key)
{
    return answerOf(u"gdbus"_s,
                    {u"call"_s, u"--session"_s, u"--dest"_s, u"org.freedesktop.portal.Desktop"_s,
                     u"--object-path"_s, u"/org/freedesktop/portal/desktop"_s, u"--method"_s,
                     u"org.freedesktop.portal.Settings.Read"_s, u"org.freedesktop.appearance"_s,
                     key});
}

ContentView *window()
{
    const auto widgets = QApplication::topLevelWidgets();
    for (QWidget *widget : widgets) {
        if (auto *found = qobject_cast<ContentView *>(widget); found && found->isVisible())
            return found;
    }
    return nullptr;
}

ColorScheme shown()
{
    return schemeOf(window()->palette());
}

} // namespace

class TestRealPortal : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup();
    void aDarkDesktopGetsADarkWindow();
    void theWindowFollowsTheDesktop();
    void theWindowStandsOutMoreWhereTheDesktopAsksForIt();
};

void TestRealPortal::initTestCase()
{
    // A portal may take long to start, once: longer than a first window waits for its colours.
    QTRY_VERIFY_WITH_TIMEOUT(!portalsAnswer(u"color-scheme"_s).isEmpty(), patience);
}

void TestRealPortal::init()
{
    QApplication::setPalette(applicationPalette(ColorScheme::Light));
}

void TestRealPortal::cleanup()
{
    QApplication::closeAllWindows();
    QTRY_VERIFY(!window());
}

void TestRealPortal::aDarkDesktopGetsADarkWindow()
{
    setColors(u"prefer-dark"_s);
    QTRY_VERIFY(portalsAnswer(u"color-scheme"_s).contains(u'1'));
    const OstreloApp app;
    QTRY_VERIFY(window());
    QTRY_COMPARE(shown(), ColorScheme::Dark);
}

void TestRealPortal::theWindowFollowsTheDesktop()
{
    setColors(u"prefer-light"_s);
    QTRY_VERIFY(portalsAnswer(u"color-scheme"_s).contains(u'2'));
    const OstreloApp app;
    QTRY_VERIFY(window());
    QTRY_COMPARE(shown(), ColorScheme::Light);
    setColors(u"prefer-dark"_s);
    QTRY_COMPARE_WITH_TIMEOUT(shown(), ColorScheme::Dark, patience);
    setColors(u"default"_s);
    QTRY_COMPARE_WITH_TIMEOUT(shown(), ColorScheme::Light, patience);
    setColors(u"prefer-dark"_s);
    QTRY_COMPARE_WITH_TIMEOUT(shown(), ColorScheme::Dark, patience);
}

void TestRealPortal::theWindowStandsOutMoreWhereTheDesktopAsksForIt()
{
    if (portalsAnswer(u"contrast"_s).isEmpty())
        QSKIP("This machine's portal knows no wish for contrast; Debian 13's does.");
    const OstreloApp app;
    QTRY_VERIFY(window());
    set(u"org.gnome.desktop.a11y.interface"_s, u"high-contrast"_s, u"true"_s);
    QTRY_COMPARE_WITH_TIMEOUT(contrastOf(window()->palette()), Contrast::More, patience);
    set(u"org.gnome.desktop.a11y.interface"_s, u"high-contrast"_s, u"false"_s);
    QTRY_COMPARE_WITH_TIMEOUT(contrastOf(window()->palette()), Contrast::Usual, patience);
}

int main(int argc, char *argv[])
{
    const QStringList lacking = missing();
    if (!lacking.isEmpty()) {
        qWarning("SKIPPED: no settings portal without %s (packages.txt, group ci)",
                 qPrintable(lacking.join(u", "_s)));
        return 0;
    }
    // A desktop of the test's own: its settings are forgotten with it.
    const QTemporaryDir home;
    for (const char *name :
         {"HOME", "XDG_RUNTIME_DIR", "XDG_CONFIG_HOME", "XDG_CACHE_HOME", "XDG_DATA_HOME"}) {
        const QString folder = home.filePath(QString::fromLatin1(name));
        QDir().mkdir(folder, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        qputenv(name, QFile::encodeName(folder));
    }
    qputenv("XDG_CURRENT_DESKTOP", "GNOME"); // whose settings the portal reads
    qputenv("GSETTINGS_BACKEND", "dconf");
    qputenv("NO_AT_BRIDGE", "1"); // no accessibility bus is wanted here
    qunsetenv("WAYLAND_DISPLAY");
    qunsetenv("SUPABASE_URL");
    qunsetenv("SUPABASE_KEY");
    const VirtualScreen screen; // the portal asks for one
    const PrivateBus bus(services());
    const QApplication application(argc, argv);
    const SupabaseClient::Lifetime client(home.path() + u"/reply.json"_s);
    TestRealPortal test;
    return QTest::qExec(&test, argc, argv);
}
#include "test_real_portal.moc"
