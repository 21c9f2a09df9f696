// Linked with the program's own main(): closes its windows by itself, as a person would. When
// depends on the variable CLOSE: "shown" (an event), "at once", or "told" (by SIGUSR1).

#include "browse/EventRow.h"

#include <QApplication>
#include <QTimer>

#include <csignal>

namespace {

volatile std::sig_atomic_t isTold = 0;

bool isTimeToClose()
{
    const QByteArray when = qgetenv("CLOSE");
    if (when == "told")
        return isTold != 0;
    const auto windows = QApplication::topLevelWidgets();
    for (const QWidget *window : windows) {
        if (window->isVisible() && (when == "at once" || window->findChild<EventRow *>()))
            return true;
    }
    return false;
}

void watch()
{
    std::signal(SIGUSR1, [](int) { isTold = 1; });
    auto *const timer = new QTimer(qApp);
    QObject::connect(timer, &QTimer::timeout, timer, [timer] {
        if (!isTimeToClose())
            return;
        timer->stop();
        QApplication::closeAllWindows();
    });
    timer->start(1);
}

} // namespace

Q_COREAPP_STARTUP_FUNCTION(watch)
