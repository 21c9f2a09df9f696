#pragma once

#include <QTimer>

/// Counts how often the event loop comes round, to prove that nothing held it up meanwhile.
class EventLoopChecker : public QObject {
    Q_OBJECT

public:
    explicit EventLoopChecker(QObject *parent = nullptr)
        : QObject(parent)
    {
        connect(&m_timer, &QTimer::timeout, this, [this] { ++m_ticks; });
        m_timer.start(0);
    }

    qint64 ticks() const { return m_ticks; }

private:
    QTimer m_timer;
    qint64 m_ticks = 0;
};
