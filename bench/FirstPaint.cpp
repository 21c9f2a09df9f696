#include "FirstPaint.h"

#include "Clocks.h"

#include <QCoreApplication>
#include <QEvent>
#include <QFile>
#include <QTimer>

#include <cstdio>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

/// What the system says of this process under `name`, in kilobytes.
int statusOf(const QByteArray &name)
{
    QFile status(u"/proc/self/status"_s);
    if (!status.open(QIODevice::ReadOnly))
        return 0;
    const QByteArray text = status.readAll();
    const qsizetype start = text.indexOf(name + ':') + name.size() + 1;
    return text.mid(start, text.indexOf("kB", start) - start).trimmed().toInt();
}

} // namespace

FirstPaint::FirstPaint(std::function<bool(QObject *)> isAwaited)
    : m_isAwaited(std::move(isAwaited))
{
    qApp->installEventFilter(this);
}

bool FirstPaint::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::Paint && !m_isPainted && m_isAwaited(watched)) {
        m_isPainted = true;
        // The whole window is painted within this event of the loop.
        QMetaObject::invokeMethod(this, &FirstPaint::tell, Qt::QueuedConnection);
    }
    return false;
}

void FirstPaint::tell()
{
    constexpr int settling = 700; ///< milliseconds in which what the start has left over is freed
    const double wall = Clocks::wall();
    const double work = Clocks::ofProcess();
    QTimer::singleShot(settling, this, [wall, work] {
        std::printf("%f %f %d %d\n", wall, work, statusOf("VmRSS"), statusOf("RssAnon"));
        QCoreApplication::quit();
    });
}
