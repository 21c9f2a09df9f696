// What the program's start costs beside that of a window of the toolkit with one label, one button
// and an empty tab widget: until the first frame is painted, and in resident memory, the program's
// with 1,000 events loaded. Every start is a fresh process; the two take turns.

#include "Clocks.h"
#include "EventsReply.h"
#include "LoopbackService.h"

#include <QProcess>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <vector>

using namespace Qt::StringLiterals;

namespace {

struct Start {
    double wall = 0; ///< milliseconds until the frame is painted, from before the process was made
    double work = 0; ///< what the processor worked for it
    double memory = 0; ///< megabytes, some time later
    double ownMemory = 0; ///< of it what is not pages of files, libraries for the most part
};

constexpr double kilobytes = 1024; ///< of a megabyte

Start start(const QString &program, const QStringList &arguments)
{
    QProcess process;
    const double begin = Clocks::wall();
    process.start(program, arguments);
    process.waitForFinished();
    Start result;
    if (std::sscanf(process.readAllStandardOutput().constData(), "%lf %lf %lf %lf", &result.wall,
                    &result.work, &result.memory, &result.ownMemory)
        != 4)
        std::abort();
    result.wall -= begin;
    result.memory /= kilobytes;
    result.ownMemory /= kilobytes;
    return result;
}

using Statistic = double (*)(std::vector<double>);

double median(std::vector<double> values)
{
    std::ranges::sort(values);
    return values[values.size() / 2];
}

/// For times on the wall, which other programs on the machine can only add to.
double least(std::vector<double> values)
{
    return *std::ranges::min_element(values);
}

struct Row {
    const char *what;
    double Start::*figure;
    Statistic statistic;
    const char *unit;
};

void print(const char *platform, const Row &row, const std::vector<Start> &stock,
           const std::vector<Start> &own)
{
    const auto valueOf = [&row](const std::vector<Start> &starts) {
        std::vector<double> values;
        for (const Start &start : starts)
            values.push_back(start.*row.figure);
        return row.statistic(values);
    };
    std::printf("| %s | %s | %.1f %s | %.1f %s | %.2f |\n", platform, row.what, valueOf(stock),
                row.unit, valueOf(own), row.unit, valueOf(own) / valueOf(stock));
    std::fflush(stdout);
}

void measure(const char *platform, int starts)
{
    qputenv("QT_QPA_PLATFORM", platform);
    const QString stockProgram = QStringLiteral(AMORVELLE_START_STOCK);
    const QString ownProgram = QStringLiteral(AMORVELLE_START_WINDOW);
    std::vector<Start> stock;
    std::vector<Start> own;
    std::vector<Start> loaded;
    for (int i = 0; i < starts; ++i) {
        stock.push_back(start(stockProgram, {}));
        own.push_back(start(ownProgram, {}));
        loaded.push_back(start(ownProgram, {u"events"_s}));
    }
    print(platform, {"first frame, least", &Start::wall, least, "ms"}, stock, own);
    print(platform, {"its work, median", &Start::work, median, "ms"}, stock, own);
    print(platform, {"memory with 1,000 events", &Start::memory, median, "MB"}, stock, loaded);
    print(platform, {"of it private", &Start::ownMemory, median, "MB"}, stock, loaded);
}

} // namespace

int main()
{
    const LoopbackService service(eventsReply(1'000));
    qputenv("SUPABASE_URL", service.base());
    qputenv("SUPABASE_KEY", "key");
    constexpr int starts = 25;
    std::puts("| platform | what | stock window | aMorvelle | times |\n|---|---|---|---|---|");
    measure("offscreen", starts);
    if (qEnvironmentVariableIsSet("DISPLAY"))
        measure("xcb", starts);
    return 0;
}
