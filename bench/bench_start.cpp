// What a person waits for at the program's start, seen from outside on a screen: the first picture,
// and the events. Beside it start a window of the toolkit and the plainest program that shows the
// events. Every start is a fresh process; the three take turns.

#include "Clocks.h"
#include "EventsReply.h"
#include "LoopbackService.h"
#include "Screen.h"

#include "support/PrivateBus.h"
#include "support/StandInPortal.h"

#include <QCoreApplication>
#include <QDate>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>

#include <algorithm>
#include <array>
#include <chrono>
#include <csignal>
#include <cstddef>
#include <cstdio>
#include <optional>
#include <sys/prctl.h>
#include <thread>
#include <vector>

using namespace Qt::StringLiterals;

namespace {

struct Start {
    double first = 0; ///< milliseconds until the screen changed, from before the process was made
    double last = 0; ///< until it showed what it then went on showing
    double lastByte = 0; ///< until the service had sent its answer
    double memory = 0; ///< megabytes resident in the end
};

struct Program {
    const char *name;
    QString path;
    bool asksService;
};

constexpr double kilobytes = 1024; ///< of a megabyte
constexpr double stillness = 300; ///< milliseconds without a change after which none is awaited
constexpr double least = 600; ///< nor before so many have passed
constexpr double patience = 20'000; ///< milliseconds
constexpr std::chrono::microseconds glance{400}; ///< from one look to the next

double residentMemory(qint64 process)
{
    QFile status(u"/proc/%1/status"_s.arg(process));
    if (!status.open(QIODevice::ReadOnly))
        return 0;
    const QByteArray text = status.readAll();
    const qsizetype start = text.indexOf("VmRSS:") + 6;
    return text.mid(start, text.indexOf("kB", start) - start).trimmed().toInt() / kilobytes;
}

void awaitPicture(const Screen &screen, std::size_t picture)
{
    const double begin = Clocks::wall();
    while (screen.picture() != picture) {
        if (Clocks::wall() > begin + patience)
            qFatal("the screen does not get empty again");
        std::this_thread::sleep_for(glance);
    }
}

Start start(const Program &program, const Screen &screen, const LoopbackService &service)
{
    const std::size_t empty = screen.picture();
    QProcess process;
    process.setChildProcessModifier([] { prctl(PR_SET_PDEATHSIG, SIGKILL); });
    process.setProcessChannelMode(QProcess::ForwardedChannels);
    const double begin = Clocks::wall();
    process.start(program.path, QStringList());

    Start result;
    std::size_t shown = empty;
    for (double now = begin;
         result.first == 0 || now < begin + least || now < begin + result.last + stillness;) {
        const std::size_t picture = screen.picture();
        now = Clocks::wall();
        if (picture != shown) {
            shown = picture;
            result.last = now - begin;
            if (result.first == 0)
                result.first = result.last;
        }
        if (now > begin + patience)
            qFatal("%s does not get still", program.name);
        std::this_thread::sleep_for(glance);
    }
    if (program.asksService)
        result.lastByte = service.lastByte().wall - begin;
    result.memory = residentMemory(process.processId());
    process.kill();
    process.waitForFinished();
    awaitPicture(screen, empty);
    return result;
}

double leastOf(const std::vector<Start> &starts, double (*figure)(const Start &))
{
    // What other programs on the machine do can only add to it.
    double value = figure(starts.front());
    for (const Start &start : starts)
        value = std::min(value, figure(start));
    return value;
}

struct Row {
    const char *what;
    double (*figure)(const Start &);
    const char *unit;
    std::size_t beside; ///< the program that ours is held against
};

void measure(const char *desktop, const char *answer, const QByteArray &body,
             LoopbackService::Pauses pauses, const std::vector<Row> &rows)
{
    const std::array programs{Program{"stock", QStringLiteral(AMORVELLE_START_STOCK), false},
                              Program{"plainest", QStringLiteral(AMORVELLE_START_PLAIN), true},
                              Program{"aMorvelle", QStringLiteral(AMORVELLE_PROGRAM), true}};
    const LoopbackService service(body, pauses);
    qputenv("SUPABASE_URL", service.base());
    const Screen screen;
    qputenv("DISPLAY", screen.display());

    constexpr int count = 21;
    std::array<std::vector<Start>, programs.size()> starts;
    for (int i = 0; i < count; ++i) {
        for (std::size_t kind = 0; kind < programs.size(); ++kind)
            starts[kind].push_back(start(programs[kind], screen, service));
    }
    for (const Row &row : rows) {
        const double other = leastOf(starts[row.beside], row.figure);
        const double own = leastOf(starts.back(), row.figure);
        std::printf("| %s | %s | %s | %s | %.1f %s | %.1f %s | %.2f |\n", desktop, answer, row.what,
                    programs[row.beside].name, other, row.unit, own, row.unit, own / other);
        std::fflush(stdout);
    }
}

void measure(const char *desktop)
{
    const Row first{"first picture", [](const Start &start) { return start.first; }, "ms", 0};
    const Row events{"events", [](const Start &start) { return start.last; }, "ms", 1};
    const Row after{"events, from the last byte",
                    [](const Start &start) { return start.last - start.lastByte; }, "ms", 1};
    const Row memory{"memory", [](const Start &start) { return start.memory; }, "MB", 0};
    const int year = QDate::currentDate().year() + 1;
    constexpr unsigned network = 50'000;
    measure(desktop, "60 events at once", eventsReply(60, year), {}, {first, events});
    measure(desktop, "60 events after 50 ms", eventsReply(60, year), {.beforeAll = network},
            {events, after});
    measure(desktop, "1,000 events after 50 ms", eventsReply(1'000, year), {.beforeAll = network},
            {events, after, memory});
}

} // namespace

int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    // A home without anything remembered, and nothing of the desktop that this was started on.
    const QTemporaryDir home;
    qputenv("HOME", home.path().toUtf8());
    qputenv("XDG_RUNTIME_DIR", home.path().toUtf8());
    for (const char *name : {"XDG_CURRENT_DESKTOP", "WAYLAND_DISPLAY", "DBUS_SESSION_BUS_ADDRESS",
                             "QT_QPA_PLATFORM", "SESSION_MANAGER"})
        qunsetenv(name);
    qputenv("SUPABASE_KEY", "key");

    std::puts("| session bus | answer | until | beside | that | aMorvelle | times |\n"
              "|---|---|---|---|---|---|---|");
    measure("none");
    const PrivateBus bus;
    const StandInPortal portal(bus, 2);
    measure("with a portal");
    return 0;
}
