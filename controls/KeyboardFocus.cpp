#include "controls/KeyboardFocus.h"

#include <QFocusEvent>
#include <QWidget>

KeyboardFocus::KeyboardFocus(QWidget *widget, Shown shown)
    : QObject(widget)
    , m_widget(widget)
    , m_shown(shown)
{
    widget->installEventFilter(this);
}

void KeyboardFocus::give(QWidget *widget)
{
    const auto watchers =
        widget->findChildren<KeyboardFocus *>(QString(), Qt::FindDirectChildrenOnly);
    for (auto *focus : watchers) {
        focus->m_byKeyboard = true;
        focus->setVisible(widget->hasFocus());
    }
    widget->setFocus(Qt::TabFocusReason);
}

bool KeyboardFocus::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::FocusIn || event->type() == QEvent::FocusOut) {
        const auto reason = static_cast<QFocusEvent *>(event)->reason();
        const bool comesBack =
            reason == Qt::ActiveWindowFocusReason || reason == Qt::PopupFocusReason;
        if (event->type() == QEvent::FocusOut) {
            setVisible(m_visible && reason == Qt::PopupFocusReason);
        } else {
            if (!comesBack) {
                m_byKeyboard = reason == Qt::TabFocusReason || reason == Qt::BacktabFocusReason
                    || reason == Qt::ShortcutFocusReason;
            }
            setVisible(m_byKeyboard || m_shown == Shown::Always);
        }
    }
    return QObject::eventFilter(watched, event);
}

void KeyboardFocus::setVisible(bool visible)
{
    if (visible == m_visible)
        return;
    m_visible = visible;
    m_widget->update();
    Q_EMIT changed(visible);
}
