#pragma once

#include <QList>
#include <QPointer>

class QWidget;

/// What lies below a sheet in its window, out of reach for as long as this lives: it takes no
/// pointer, no key, no focus and no press of a screen reader, which does not even find it. It looks
/// as before. Afterwards the focus is where it was, or, if that does not show any more, on what
/// does nearest to it.
class OutOfReach {
public:
    /// `sheet` is a child of its window that is open and has the focus; `focusBefore` had it.
    OutOfReach(QWidget *sheet, QWidget *focusBefore);
    ~OutOfReach();
    Q_DISABLE_COPY_MOVE(OutOfReach)

private:
    void giveBackFocus() const;

    QWidget *m_sheet;
    QPointer<QWidget> m_window;
    QPointer<QWidget> m_focusBefore;
    QList<QPointer<QWidget>> m_below;
};
