#pragma once

#include "look/KeyboardFocus.h"

#include <QPointer>
#include <QWidget>

/// A ring around a control that has no room for it within its own rectangle. It lies above the
/// control, in its parent or the next ancestor that has room, takes no mouse, and follows.
class FocusRing : public QWidget {
    Q_OBJECT

public:
    /// `gap` lies between the control and the ring; `radius` is the control's own.
    FocusRing(QWidget *target, qreal radius, int gap = 1,
              KeyboardFocus::Shown shown = KeyboardFocus::Shown::ByKeyboard);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    void follow();

    QPointer<QWidget> m_target;
    QPointer<KeyboardFocus> m_focus;
    QList<QPointer<QWidget>> m_watched;
    qreal m_radius;
    int m_gap;
};
