#pragma once

#include <QObject>
#include <QPointer>

class QWidget;

/// Keeps the second half of a double click, whose first half has opened something in a window, from
/// what happens to lie under the pointer now. Anything after the next press is none of its
/// business.
class EndOfDoubleClick : public QObject {
    Q_OBJECT

public:
    /// Watches from now on what is pressed in the window of `opened`.
    explicit EndOfDoubleClick(QWidget *opened);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    QPointer<QWidget> m_window;
};
