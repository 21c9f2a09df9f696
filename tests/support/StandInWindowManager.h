#pragma once

#include <QList>
#include <QObject>

#include <xcb/xcb.h>

/// As much of a window manager as the keyboard needs: the window that was opened last has it, and
/// once that is gone the one opened before it. On the screen that DISPLAY names.
class StandInWindowManager : public QObject {
    Q_OBJECT

public:
    StandInWindowManager();
    ~StandInWindowManager() override;
    Q_DISABLE_COPY_MOVE(StandInWindowManager)

private:
    void follow();
    void forget(xcb_window_t window);
    void giveKeyboard();

    xcb_connection_t *m_connection;
    QList<xcb_window_t> m_open; ///< in the order of their opening
};
