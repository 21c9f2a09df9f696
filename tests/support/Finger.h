#pragma once

#include <QCoreApplication>
#include <QPointingDevice>
#include <QTest>
#include <QWindow>

/// A finger on a touch screen. Touches reach the window as the host hands them over, so that what
/// nobody takes becomes a mouse's, as it does for a person.
class Finger {
public:
    explicit Finger(QWidget *window)
        : m_window(window->windowHandle())
    {
    }

    /// `at` in the window.
    void press(QPoint at) { QTest::touchEvent(m_window, device()).press(0, at, m_window); }
    void move(QPoint at) { QTest::touchEvent(m_window, device()).move(0, at, m_window); }
    void release(QPoint at) { QTest::touchEvent(m_window, device()).release(0, at, m_window); }

    void tap(QPoint at)
    {
        press(at);
        release(at);
        QCoreApplication::processEvents();
    }

    /// From one place to another in many small moves; the finger rests there before it leaves.
    void drag(QPoint from, QPoint to)
    {
        constexpr int moves = 20;
        press(from);
        for (int i = 1; i <= moves; ++i)
            move(from + (to - from) * i / moves);
        QTest::qWait(150); // at rest: longer than a throw's speed is judged by
        move(to);
        release(to);
        QCoreApplication::processEvents();
    }

    /// The same in no time, and off: a throw.
    void flick(QPoint from, QPoint to)
    {
        press(from);
        move((from + to) / 2);
        move(to);
        release(to);
        QCoreApplication::processEvents();
    }

private:
    static QPointingDevice *device()
    {
        static QPointingDevice *const device = QTest::createTouchDevice();
        return device;
    }

    QWindow *m_window;
};
