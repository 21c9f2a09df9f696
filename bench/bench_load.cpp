// What loading many events costs the person at the window: from the last byte of the reply to the
// painted list, beside a bare simdjson parse of the same bytes, and how long the window is deaf
// meanwhile, beside a window with nothing to do.
//
// The window is the real one, loading from a service in another process. All but the first load
// replace a list as long as the new one, which is freed then. Times on the wall are the least of
// all loads, since another program on the machine can only add to them; work is the processor's
// time, median. A stall is the longest time between two ticks of a fast timer during a load, less
// the longest with nothing to do; the work is what the window's thread did in one.

#include "Clocks.h"
#include "EventsReply.h"
#include "LoopbackService.h"
#include "Receiving.h"
#include "backend/SupabaseClient.h"
#include "browse/ContentView.h"
#include "browse/EventRow.h"
#include "look/Accessibility.h"
#include "look/Colors.h"
#include "look/Fonts.h"
#include "platform/LargeBlocks.h"
#include "sectionlist/SectionListAccessible.h"

#include <QAction>
#include <QApplication>
#include <QTimer>

#include <simdjson.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <optional>
#include <vector>

namespace {

struct Moment {
    double wall = Clocks::wall();
    double process = Clocks::ofProcess();
};

/// Notes when rows have been painted.
class RowWatch : public QObject {
    Q_OBJECT

public:
    RowWatch() { qApp->installEventFilter(this); }

    void forget() { m_painted.reset(); }
    const std::optional<Moment> &whenPainted() const { return m_painted; }

Q_SIGNALS:
    void painted();

protected:
    bool eventFilter(QObject *watched, QEvent *event) override
    {
        const auto *row =
            event->type() == QEvent::Paint ? dynamic_cast<const EventRow *>(watched) : nullptr;
        // Others are rehearsed with, in no window.
        if (row && row->isVisible() && !m_painted && !m_waiting) {
            // The whole window is painted within this event of the loop, and sent to the screen.
            m_waiting = true;
            const auto note = [this] {
                m_waiting = false;
                m_painted = Moment();
                Q_EMIT painted();
            };
            QMetaObject::invokeMethod(this, note, Qt::QueuedConnection);
        }
        return false;
    }

private:
    std::optional<Moment> m_painted;
    bool m_waiting = false;
};

/// The longest stretches between two ticks of a fast timer, and the work that the thread did in
/// one: for so long a key pressed then would have waited.
class StallWatch : public QObject {
    Q_OBJECT

public:
    StallWatch()
    {
        m_timer.setTimerType(Qt::PreciseTimer);
        connect(&m_timer, &QTimer::timeout, this, &StallWatch::tick);
        m_timer.start(1);
    }

    void forget()
    {
        m_longest = m_mostWork = 0;
        m_wall = Clocks::wall();
        m_work = Clocks::ofThread();
    }
    double longest() const { return m_longest; }
    double mostWork() const { return m_mostWork; }

private:
    void tick()
    {
        const double wall = Clocks::wall();
        const double work = Clocks::ofThread();
        m_longest = std::max(m_longest, wall - m_wall);
        m_mostWork = std::max(m_mostWork, work - m_work);
        m_wall = wall;
        m_work = work;
    }

    QTimer m_timer;
    double m_wall = 0;
    double m_work = 0;
    double m_longest = 0;
    double m_mostWork = 0;
};

class Figure {
public:
    void add(double value) { m_values.push_back(value); }
    double least() const { return *std::ranges::min_element(m_values); }
    double most() const { return *std::ranges::max_element(m_values); }
    double median() const
    {
        std::vector<double> sorted = m_values;
        std::ranges::sort(sorted);
        return sorted[sorted.size() / 2];
    }

private:
    std::vector<double> m_values;
};

constexpr int settling = 1000; ///< milliseconds in which what is left over is freed

void runFor(int milliseconds)
{
    QEventLoop loop;
    QTimer::singleShot(milliseconds, &loop, &QEventLoop::quit);
    loop.exec();
}

void runUntilPainted(const RowWatch &watch)
{
    QEventLoop loop;
    QObject::connect(&watch, &RowWatch::painted, &loop, &QEventLoop::quit);
    loop.exec();
}

void reload(const ContentView &window)
{
    const auto actions = window.findChildren<QAction *>();
    for (QAction *action : actions) {
        if (action->shortcuts().contains(QKeySequence(Qt::Key_F5)))
            action->trigger();
    }
}

double bareParse(const QByteArray &body)
{
    const double start = Clocks::ofThread();
    simdjson::dom::parser parser;
    if (parser.parse(body.constData(), static_cast<size_t>(body.size())).error())
        std::abort();
    return Clocks::ofThread() - start;
}

struct Figures {
    Figure bare;
    Figure painted;
    Figure paintedWork;
    Figure stall;
    Figure stallWork;
    Figure idle;
};

void print(const char *name, const Figures &figures)
{
    std::printf("| %s | %.1f | %.1f | %.2f | %.2f | %.1f | %.1f |\n", name, figures.bare.least(),
                figures.painted.least(), figures.painted.least() / figures.bare.least(),
                figures.paintedWork.median() / figures.bare.median(),
                figures.stall.median() - figures.idle.median(), figures.stallWork.most());
}

void measureWindow(const QByteArray &body, const LoopbackService &service, int loads,
                   Figures &first, Figures &again)
{
    RowWatch rowWatch;
    StallWatch stallWatch;
    ContentView window;
    for (int load = 0; load < loads; ++load) {
        Figures &figures = load == 0 ? first : again;
        rowWatch.forget();
        stallWatch.forget();
        if (load == 0)
            window.show();
        else
            reload(window);
        runUntilPainted(rowWatch);
        runFor(settling);
        const auto lastByte = service.lastByte();
        figures.painted.add(rowWatch.whenPainted()->wall - lastByte.wall);
        figures.paintedWork.add(rowWatch.whenPainted()->process - lastByte.work);
        figures.stall.add(stallWatch.longest());
        figures.stallWork.add(stallWatch.mostWork());
        stallWatch.forget();
        runFor(settling);
        figures.idle.add(stallWatch.longest());
        figures.bare.add(bareParse(body));
    }
}

} // namespace

int main(int argc, char *argv[])
{
    keepLargeBlocksApart(); // as the program does
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    constexpr int rows = 100'000;
    constexpr int windows = 4;
    constexpr int loads = 4;
    const QByteArray body = eventsReply(rows);
    // The last byte comes some time after all others, which are then read already.
    const LoopbackService service(body, {.beforeLastByte = 250'000});
    qputenv("SUPABASE_URL", service.base());
    qputenv("SUPABASE_KEY", "key");

    const QApplication application(argc, argv);
    const SupabaseClient::Lifetime client;
    installAccessibility();
    installSectionListAccessibility();
    QApplication::setFont(appFont(13));
    QApplication::setPalette(applicationPalette(ColorScheme::Light));
    Figures first;
    Figures again;
    for (int window = 0; window < windows; ++window)
        measureWindow(body, service, loads, first, again);
    std::printf("| load | bare parse ms | painted ms | times bare | times bare, work | stall ms | "
                "work in a stall ms |\n"
                "|---|---|---|---|---|---|---|\n");
    print("first", first);
    print("again", again);
    std::puts("");
    measureReceiving(body.first(45'000'000));
    return 0;
}

#include "bench_load.moc"
