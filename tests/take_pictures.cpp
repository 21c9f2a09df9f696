// Takes the pictures in docs/: the window on the local service's events, light and dark.
// Usage: take_pictures FOLDER SUFFIX, where SUFFIX ("" or "-2x") goes with QT_SCALE_FACTOR.

#include "browse/EventDetailView.h"
#include "browse/EventRow.h"
#include "controls/Colors.h"
#include "support/LocalService.h"
#include "support/OwnHome.h"
#include "support/WindowTest.h"

#include <QApplication>
#include <QPainter>

using namespace WindowTest;

namespace {

void save(QWidget *widget, const QString &file)
{
    if (!widget->grab().save(file))
        qFatal("cannot write %s", qPrintable(file));
    qInfo("%s", qPrintable(file));
}

EventRow *firstRow(const QWidget *window)
{
    const auto rows = window->findChildren<EventRow *>();
    for (EventRow *row : rows) {
        if (row->isVisible())
            return row;
    }
    return nullptr;
}

} // namespace

int main(int argc, char *argv[])
{
    const OwnHome home;
    const QApplication application(argc, argv);
    const QStringList arguments = QApplication::arguments();
    if (arguments.size() != 3)
        qFatal("usage: take_pictures FOLDER SUFFIX");
    LocalService service;
    if (!service.isRunning())
        qFatal("the local service did not start:\n%s", qPrintable(service.output()));
    qputenv("SUPABASE_URL", service.url().toLatin1());
    qputenv("SUPABASE_KEY", service.key().toLatin1());

    QList<ContentView *> windows;
    QStringList files;
    for (const ColorScheme scheme : {ColorScheme::Light, ColorScheme::Dark}) {
        const QLatin1StringView name(scheme == ColorScheme::Light ? "light" : "dark");
        QApplication::setPalette(applicationPalette(scheme));
        const auto file = [&](const char *view) {
            return QStringLiteral("%1/%2-%3%4.png")
                .arg(arguments[1], QLatin1StringView(view), name, arguments[2]);
        };
        {
            // Taken before the event loop can bring the reply.
            ContentView loading;
            loading.show();
            save(&loading, file("window-loading"));
        }
        auto window = shownWindow();
        if (!QTest::qWaitFor([&] { return firstRow(window.get()) != nullptr; }, 10'000))
            qFatal("no event has come");
        save(window.get(), file("window"));

        window->resize(window->minimumSize());
        save(window.get(), file("window-minimum"));
        window->resize(window->sizeHint());

        QTest::mouseClick(firstRow(window.get()), Qt::LeftButton);
        if (auto *detail = window->findChild<EventDetailView *>()) {
            QPixmap both = window->grab();
            QPainter(&both).drawPixmap(detail->geometry().topLeft() - window->geometry().topLeft(),
                                       detail->grab());
            if (!both.save(file("detail")))
                qFatal("cannot write %s", qPrintable(file("detail")));
            detail->close();
        }
        QTest::mouseClick(named(window.get(), QStringLiteral("Passés")), Qt::LeftButton);
        save(window.get(), file("window-past"));
        windows.append(window.release());
        files.append(file("window-error"));
    }

    // Nobody answers any more.
    service.stop();
    for (qsizetype i = 0; i < windows.size(); ++i) {
        QApplication::setPalette(
            applicationPalette(i == 0 ? ColorScheme::Light : ColorScheme::Dark));
        windows[i]->activateWindow();
        if (!QTest::qWaitForWindowActive(windows[i]))
            qFatal("the window does not come to the front");
        QTest::keyClick(windows[i], Qt::Key_F5);
        if (!QTest::qWaitFor([&] {
                return !firstRow(windows[i])
                    && !named(windows[i], QStringLiteral("Loading events…"));
            }))
            qFatal("the load did not fail");
        save(windows[i], files[i]);
    }
    qDeleteAll(windows);
    return 0;
}
