#include "controls/EndOfDoubleClick.h"

#include <QCoreApplication>
#include <QEvent>
#include <QWidget>
#include <QWindow>

EndOfDoubleClick::EndOfDoubleClick(QWidget *opened)
    : QObject(opened)
    , m_window(opened->window())
{
    QCoreApplication::instance()->installEventFilter(this);
}

bool EndOfDoubleClick::eventFilter(QObject *watched, QEvent *event)
{
    // Windows hear of each press; widgets of none that ends a double click.
    if (event->type() == QEvent::MouseButtonPress && watched->isWidgetType()) {
        m_window.clear();
        deleteLater();
    }
    return event->type() == QEvent::MouseButtonDblClick && watched->isWindowType() && m_window
        && watched == m_window->windowHandle();
}
