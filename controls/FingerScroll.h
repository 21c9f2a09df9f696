#pragma once

#include <QBasicTimer>
#include <QElapsedTimer>
#include <QObject>
#include <QPointF>
#include <QPointer>

#include <deque>
#include <optional>

class QAbstractScrollArea;
class QScrollBar;
class QTouchEvent;
class QWidget;

/// Lets a finger scroll what is on a surface: it follows the finger, and goes on for a while when
/// the finger leaves it in motion. A tap is a click on what is under it; a drag presses nothing,
/// and so does a tap that stops what still moves. Where there is nothing to scroll, the touch goes
/// to the surface around, or is a mouse's. Main thread only.
class FingerScroll : public QObject {
    Q_OBJECT

public:
    /// Fingers on `surface`, and on what is in it, move `bar`; lives as long as `surface`.
    FingerScroll(QWidget *surface, QScrollBar *bar);
    /// The vertical scroll bar of an area and its viewport.
    explicit FingerScroll(QAbstractScrollArea *area);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
    void timerEvent(QTimerEvent *event) override;

private:
    struct Sample {
        qint64 time = 0; ///< in milliseconds, of the touch's own clock
        double y = 0;
    };

    bool handleTouch(const QTouchEvent &event);
    bool begin(const QTouchEvent &event);
    void follow(const QTouchEvent &event);
    void end(const QTouchEvent &event);
    void note(const QTouchEvent &event);
    double speed() const;
    void tap() const;
    void throwOn(double speed);
    void stop();
    bool scrollBy(double pixels);

    QWidget *m_surface;
    QPointer<QScrollBar> m_bar;
    std::optional<int> m_finger; ///< the id of the one that is on the surface
    QPointF m_start; ///< where it came down
    double m_last = 0; ///< how far down the screen it was when the bar last followed it
    bool m_dragging = false;
    bool m_pressesNothing = false;
    std::deque<Sample> m_samples; ///< the latest

    QBasicTimer m_throw;
    QElapsedTimer m_clock; ///< since the last step of the throw
    double m_speed = 0; ///< pixels a second, downwards in the content
    double m_rest = 0; ///< a fraction of a pixel not scrolled yet
    int m_thrownTo = 0; ///< the bar's value after that step
};
