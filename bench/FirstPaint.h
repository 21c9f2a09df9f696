#pragma once

#include <QObject>

#include <functional>

/// In a program that bench_start starts: prints when it had painted what `isAwaited` says, how much
/// the processor had worked until then, and how much memory the process holds some time later and
/// how much of it is its own, and ends the program.
class FirstPaint : public QObject {
    Q_OBJECT

public:
    explicit FirstPaint(std::function<bool(QObject *)> isAwaited);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void tell();

    std::function<bool(QObject *)> m_isAwaited;
    bool m_isPainted = false;
};
