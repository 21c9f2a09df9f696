#include "support/WaylandDesktop.h"

#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QStandardPaths>
#include <QTest>

#include <csignal>
#include <sys/prctl.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

constexpr int patience = 60'000; ///< milliseconds; a busy machine under a sanitizer is slow
constexpr QSize screen(1280, 900);
constexpr uint nobody = 65534;

/// Windows float, as on desktops that do not tile.
constexpr QLatin1StringView configuration{R"(xwayland disable
output HEADLESS-1 mode 1280x900 position 0 0 bg #335577 solid_color
default_border none
default_floating_border none
focus_follows_mouse no
for_window [app_id=".*"] floating enable, move position 200 40
)"};

QList<QRect> windowsIn(const QJsonObject &node)
{
    QList<QRect> found;
    if (node.value(u"pid"_s).toInt() > 0) {
        const QJsonObject rect = node.value(u"rect"_s).toObject();
        found.append({rect.value(u"x"_s).toInt(), rect.value(u"y"_s).toInt(),
                      rect.value(u"width"_s).toInt(), rect.value(u"height"_s).toInt()});
    }
    for (const QString &list : {u"nodes"_s, u"floating_nodes"_s}) {
        const auto children = node.value(list).toArray();
        for (const auto &child : children)
            found += windowsIn(child.toObject());
    }
    return found;
}

} // namespace

QStringList WaylandDesktop::missing()
{
    QStringList programs{u"sway"_s, u"swaymsg"_s, u"grim"_s, u"wtype"_s, u"setpriv"_s};
    programs.removeIf(
        [](const QString &name) { return !QStandardPaths::findExecutable(name).isEmpty(); });
    return programs;
}

WaylandDesktop::WaylandDesktop()
{
    startCompositor();
    m_pointer = std::make_unique<VirtualPointer>(qEnvironmentVariable("WAYLAND_DISPLAY"), screen);
    startKeyboard();
}

WaylandDesktop::~WaylandDesktop()
{
    m_keyboard.kill();
    m_keyboard.waitForFinished();
    m_pointer.reset();
    m_compositor.terminate();
    if (!m_compositor.waitForFinished())
        m_compositor.kill();
    m_compositor.waitForFinished();
}

QImage WaylandDesktop::picture() const
{
    return QImage::fromData(run(u"grim"_s, {u"-t"_s, u"ppm"_s, u"-"_s}), "PPM");
}

QRect WaylandDesktop::window() const
{
    const auto tree = run(u"swaymsg"_s, {u"-s"_s, m_socket, u"-r"_s, u"-t"_s, u"get_tree"_s});
    const auto windows = windowsIn(QJsonDocument::fromJson(tree).object());
    return windows.size() == 1 ? windows.first() : QRect();
}

void WaylandDesktop::key(const QString &name) const
{
    run(u"wtype"_s, {u"-k"_s, name});
}

void WaylandDesktop::type(const QString &text) const
{
    run(u"wtype"_s, {u"--"_s, text});
}

QByteArray WaylandDesktop::run(const QString &program, const QStringList &arguments) const
{
    QProcess process;
    auto environment = QProcessEnvironment::systemEnvironment();
    environment.insert(u"LC_ALL"_s, u"C.UTF-8"_s); // or what is typed has no letters but ASCII's
    process.setProcessEnvironment(environment);
    process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    process.start(program, arguments);
    if (!process.waitForFinished(patience) || process.exitCode() != 0)
        qWarning("%s failed", qPrintable(program));
    return process.readAllStandardOutput();
}

QString WaylandDesktop::writeConfiguration() const
{
    QFile file(m_folder.filePath(u"sway.conf"_s));
    if (!file.open(QFile::WriteOnly) || file.write(configuration.data(), configuration.size()) < 0)
        qFatal("the compositor's configuration cannot be written");
    return file.fileName();
}

void WaylandDesktop::startCompositor()
{
    QStringList arguments{u"--pdeathsig"_s, u"TERM"_s};
    const QString settings = writeConfiguration();
    // It refuses to be run by root.
    if (geteuid() == 0) {
        arguments += {u"--reuid"_s, QString::number(nobody), u"--regid"_s, QString::number(nobody),
                      u"--clear-groups"_s};
        for (const QString &path : {m_folder.path(), settings}) {
            if (chown(qPrintable(path), nobody, nobody) != 0)
                qFatal("no folder for the compositor");
        }
    }
    auto environment = QProcessEnvironment::systemEnvironment();
    for (const auto *name : {"DISPLAY", "WAYLAND_DISPLAY", "SWAYSOCK"})
        environment.remove(QString::fromLatin1(name));
    for (const auto *name : {"HOME", "XDG_RUNTIME_DIR", "XDG_CACHE_HOME"})
        environment.insert(QString::fromLatin1(name), m_folder.path());
    environment.insert(u"WLR_BACKENDS"_s, u"headless"_s);
    environment.insert(u"WLR_RENDERER"_s, u"pixman"_s);
    environment.insert(u"WLR_LIBINPUT_NO_DEVICES"_s, u"1"_s);
    m_compositor.setProcessEnvironment(environment);
    m_compositor.setStandardOutputFile(QProcess::nullDevice());
    m_compositor.setStandardErrorFile(m_folder.filePath(u"sway.log"_s));
    m_compositor.start(u"setpriv"_s, arguments + QStringList{u"sway"_s, u"-c"_s, settings});

    const QDir folder(m_folder.path());
    QStringList display;
    QStringList commands;
    const bool isUp = QTest::qWaitFor(
        [&] {
            display = folder.entryList({u"wayland-?"_s}, QDir::System);
            commands = folder.entryList({u"sway-ipc.*.sock"_s}, QDir::System);
            return !display.isEmpty() && !commands.isEmpty();
        },
        patience);
    if (!isUp) {
        QFile log(m_folder.filePath(u"sway.log"_s));
        log.open(QFile::ReadOnly);
        qFatal("the compositor does not start:\n%s", log.readAll().constData());
    }
    qunsetenv("DISPLAY");
    qputenv("LC_ALL", "C.UTF-8"); // of a locale not installed newer toolkits complain
    qputenv("WAYLAND_DISPLAY", folder.filePath(display.first()).toLocal8Bit());
    m_socket = folder.filePath(commands.first());
}

void WaylandDesktop::startKeyboard()
{
    constexpr auto longerThanAnyTest = "36000000"; // milliseconds
    m_keyboard.setChildProcessModifier([] { prctl(PR_SET_PDEATHSIG, SIGKILL); });
    m_keyboard.start(u"wtype"_s,
                     {u"-s"_s, QString::fromLatin1(longerThanAnyTest), u"-k"_s, u"Shift_L"_s});
    if (!m_keyboard.waitForStarted())
        qFatal("no keyboard for the compositor");
}
