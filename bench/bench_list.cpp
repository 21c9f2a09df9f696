// What a list of many events costs: from its content to the first picture, and a step of scrolling.
// Beside it a stock list view with the same rows, which must measure them all to know its length.

#include "Clocks.h"
#include "ListRow.h"
#include "controls/Pane.h"
#include "look/Colors.h"
#include "sectionlist/SectionList.h"

#include <QApplication>
#include <QListView>
#include <QScrollBar>
#include <QVBoxLayout>

#include <algorithm>
#include <cstdio>
#include <numeric>
#include <vector>

using namespace Qt::StringLiterals;

namespace {

constexpr int wheelStep = 60;

/// The time that this thread has worked: other programs on the machine do not count. Nothing here
/// waits, and all of it runs on this thread.
class WorkTimer {
public:
    void start() { m_start = Clocks::ofThread(); }
    double milliseconds() const { return Clocks::ofThread() - m_start; }

private:
    double m_start = 0;
};

/// Paints all that waits, at once.
void paintNow(QWidget &window)
{
    window.repaint(0, 0, 1, 1);
}

struct Steps {
    double mean = 0;
    double p99 = 0;
};

/// Steps of the wheel from where the bar stands; each is painted.
Steps scroll(QWidget &window, QScrollBar &bar, int count)
{
    std::vector<double> times;
    for (int step = 0; step < count; ++step) {
        WorkTimer timer;
        timer.start();
        bar.setValue(bar.value() + wheelStep);
        paintNow(window);
        times.push_back(timer.milliseconds());
        QCoreApplication::processEvents(); // timers and the like are not the step's
    }
    std::ranges::sort(times);
    return {std::accumulate(times.begin(), times.end(), 0.0) / count,
            times[times.size() * 99 / 100]};
}

SectionListContent contentOf(int rows)
{
    SectionListContent content;
    for (int row = 0; row < rows; row += 30)
        content.sections.append({u"Mois %1"_s.arg(row / 30), std::min(30, rows - row)});
    content.rowId = [](int row) { return QString::number(row); };
    content.fill = [](SectionListRow &widget, int row) {
        static_cast<ListRow &>(widget).show(listItem(row), row % 4 == 0);
    };
    return content;
}

void measureSectionList(int rows)
{
    QWidget window;
    auto *pane = new Pane(&window);
    auto *list = new SectionList([] { return new ListRow; });
    pane->setContent(list);
    pane->setGeometry(16, 88, 728, 516);
    window.resize(760, 620);
    window.show();
    QCoreApplication::processEvents();
    paintNow(window);

    WorkTimer timer;
    timer.start();
    list->setContent(contentOf(rows));
    const double content = timer.milliseconds();
    paintNow(window);
    const double first = timer.milliseconds();

    timer.start();
    list->setContent(contentOf(rows));
    paintNow(window);
    const double again = timer.milliseconds();

    scroll(window, *list->scrollBar(), 50); // caches of glyphs
    const int shown = 1400;
    const int from = list->scrollBar()->value();
    timer.start();
    const Steps steps = scroll(window, *list->scrollBar(), shown);
    const int way = list->scrollBar()->value() - from;
    const double perRow = steps.mean * shown / (way / 112.0);

    std::vector<double> jumps;
    for (int jump = 0; jump < 100; ++jump) {
        timer.start();
        list->scrollBar()->setValue(
            int(qint64(jump * 37 % 100) * list->scrollBar()->maximum() / 100));
        paintNow(window);
        jumps.push_back(timer.milliseconds());
    }
    std::ranges::sort(jumps);
    std::printf("| SectionList | %6d | %8.2f | %8.2f | %8.2f | %6.3f | %6.3f | %6.3f | %6.2f |\n",
                rows, content, first, again, steps.mean, steps.p99, perRow, jumps[98]);
}

void measureListView(int rows)
{
    QWidget window;
    auto *view = new QListView(&window);
    view->setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
    view->setGeometry(16, 88, 728, 516);
    window.resize(760, 620);
    window.show();
    ListDelegate delegate;
    view->setItemDelegate(&delegate);
    QCoreApplication::processEvents();
    paintNow(window);

    ListModel model(rows);
    WorkTimer timer;
    timer.start();
    view->setModel(&model);
    QCoreApplication::processEvents();
    paintNow(window);
    const double first = timer.milliseconds();
    const Steps steps = scroll(window, *view->verticalScrollBar(), rows > 10000 ? 300 : 1400);
    std::printf("| QListView   | %6d | %8s | %8.2f | %8s | %6.3f | %6.3f | %6s | %6s |\n", rows, "",
                first, "", steps.mean, steps.p99, "", "");
}

} // namespace

int main(int argc, char *argv[])
{
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication application(argc, argv);
    QApplication::setPalette(applicationPalette(ColorScheme::Light));
    std::puts(
        "times in ms       |   rows |  content |  painted |    again |   step |    p99 | a row  |"
        " jump99 |");
    for (const int rows : {1000, 10000, 100000})
        measureSectionList(rows);
    for (const int rows : {1000, 10000, 100000})
        measureListView(rows);
    return 0;
}
