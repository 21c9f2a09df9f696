#include "controls/FingerScroll.h"

#include <QAbstractScrollArea>
#include <QApplication>
#include <QMouseEvent>
#include <QScrollBar>
#include <QTimerEvent>
#include <QTouchEvent>
#include <QWindow>

#include <algorithm>
#include <cmath>

namespace {

constexpr double slack = 12; ///< pixels; a finger that rolls less far is tapping
constexpr qint64 judged = 100; ///< milliseconds before the lifting, of which the throw's speed is
constexpr double leastThrow = 60; ///< pixels a second; slower, the finger had come to rest
constexpr double mostThrow = 6000;
constexpr double standstill = 15;
constexpr double slowing = 0.325; ///< seconds in which the speed falls to its e-th part
constexpr int frame = 16; ///< milliseconds

const QEventPoint *pointOf(const QTouchEvent &event, int id)
{
    const auto &points = event.points();
    const auto found = std::find_if(points.begin(), points.end(),
                                    [id](const QEventPoint &point) { return point.id() == id; });
    return found == points.end() ? nullptr : &*found;
}

void sendMouse(QWindow *window, QEvent::Type type, QPointF global)
{
    const QPointF local = window->mapFromGlobal(global);
    const bool isPress = type == QEvent::MouseButtonPress;
    QMouseEvent event(type, local, local, global, Qt::LeftButton,
                      isPress ? Qt::LeftButton : Qt::NoButton, QGuiApplication::keyboardModifiers(),
                      Qt::MouseEventSynthesizedByApplication);
    QCoreApplication::sendEvent(window, &event);
}

} // namespace

FingerScroll::FingerScroll(QWidget *surface, QScrollBar *bar)
    : QObject(surface)
    , m_surface(surface)
    , m_bar(bar)
{
    surface->setAttribute(Qt::WA_AcceptTouchEvents);
    surface->installEventFilter(this);
}

FingerScroll::FingerScroll(QAbstractScrollArea *area)
    : FingerScroll(area->viewport(), area->verticalScrollBar())
{
}

bool FingerScroll::eventFilter(QObject *watched, QEvent *event)
{
    switch (event->type()) {
    case QEvent::TouchBegin:
    case QEvent::TouchUpdate:
    case QEvent::TouchEnd:
        if (!handleTouch(static_cast<const QTouchEvent &>(*event)))
            break;
        event->accept();
        return true;
    case QEvent::TouchCancel:
    case QEvent::Hide:
        m_finger.reset();
        stop();
        break;
    case QEvent::MouseButtonPress:
    case QEvent::Wheel:
        stop();
        break;
    default:
        break;
    }
    return QObject::eventFilter(watched, event);
}

void FingerScroll::timerEvent(QTimerEvent *event)
{
    if (event->timerId() != m_throw.timerId()) {
        QObject::timerEvent(event);
        return;
    }
    const double seconds = double(m_clock.nsecsElapsed()) / 1e9;
    m_clock.restart();
    const double kept = std::exp(-seconds / slowing);
    // Whoever else has scrolled meanwhile wants to be where that has led.
    const bool moves =
        m_bar && m_bar->value() == m_thrownTo && scrollBy(m_speed * slowing * (1 - kept));
    m_speed *= kept;
    if (!moves || std::abs(m_speed) < standstill)
        stop();
}

bool FingerScroll::handleTouch(const QTouchEvent &event)
{
    if (event.type() == QEvent::TouchBegin)
        return begin(event);
    if (!m_finger)
        return false;
    if (event.type() == QEvent::TouchUpdate)
        follow(event);
    else
        end(event);
    return true;
}

bool FingerScroll::begin(const QTouchEvent &event)
{
    const bool wasMoving = m_throw.isActive();
    stop();
    m_finger.reset();
    if (!m_bar || m_bar->maximum() == m_bar->minimum() || event.points().isEmpty())
        return false;
    const QEventPoint &point = event.points().constFirst();
    if (m_bar->isVisible()
        && m_bar->rect().contains(m_bar->mapFromGlobal(point.globalPosition().toPoint())))
        return false; // the thumb is pulled, as with a mouse
    m_finger = point.id();
    m_start = point.globalPosition();
    m_dragging = false;
    m_pressesNothing = wasMoving;
    m_samples.clear();
    note(event);
    return true;
}

void FingerScroll::follow(const QTouchEvent &event)
{
    m_pressesNothing |= event.points().size() > 1;
    const QEventPoint *point = pointOf(event, *m_finger);
    if (!point)
        return;
    note(event);
    const QPointF at = point->globalPosition();
    const QPointF way = at - m_start;
    if (!m_dragging) {
        m_dragging = std::hypot(way.x(), way.y()) > slack;
        m_last = at.y();
        return;
    }
    scrollBy(m_last - at.y());
    m_last = at.y();
}

void FingerScroll::end(const QTouchEvent &event)
{
    follow(event);
    m_finger.reset();
    if (m_dragging)
        throwOn(speed());
    else if (!m_pressesNothing)
        tap();
}

void FingerScroll::note(const QTouchEvent &event)
{
    const QEventPoint *point = pointOf(event, *m_finger);
    const auto now = qint64(event.timestamp());
    m_samples.push_back({now, point->globalPosition().y()});
    while (m_samples.front().time < now - judged)
        m_samples.pop_front();
}

/// How fast the finger was when it left, in pixels a second, upwards on the screen.
double FingerScroll::speed() const
{
    const Sample &first = m_samples.front();
    const Sample &last = m_samples.back();
    const qint64 time = std::max<qint64>(last.time - first.time, 1);
    return (first.y - last.y) / double(time) * 1000;
}

void FingerScroll::tap() const
{
    const QPointer<QWindow> window = m_surface->window()->windowHandle();
    if (!window)
        return;
    const QPointF at = m_start;
    sendMouse(window, QEvent::MouseButtonPress, at);
    if (window)
        sendMouse(window, QEvent::MouseButtonRelease, at);
    if (!window)
        return;
    QEvent leave(QEvent::Leave); // a finger that is gone hovers over nothing
    QCoreApplication::sendEvent(window, &leave);
}

void FingerScroll::throwOn(double speed)
{
    if (std::abs(speed) < leastThrow)
        return;
    m_speed = std::clamp(speed, -mostThrow, mostThrow);
    m_thrownTo = m_bar ? m_bar->value() : 0;
    m_clock.start();
    m_throw.start(frame, Qt::PreciseTimer, this);
}

void FingerScroll::stop()
{
    m_throw.stop();
    m_rest = 0;
}

/// False when there was nothing left to scroll to.
bool FingerScroll::scrollBy(double pixels)
{
    if (!m_bar)
        return false;
    m_rest += pixels;
    const int whole = int(m_rest);
    m_rest -= whole;
    m_bar->setValue(m_bar->value() + whole);
    m_thrownTo = m_bar->value();
    return pixels > 0 ? m_thrownTo < m_bar->maximum() : m_thrownTo > m_bar->minimum();
}
