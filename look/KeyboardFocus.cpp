#include "look/KeyboardFocus.h"

#include <QApplication>
#include <QFocusEvent>
#include <QWidget>

#include <algorithm>

namespace {

QList<KeyboardFocus *> watchersOf(const QWidget *widget)
{
    return widget->findChildren<KeyboardFocus *>(Qt::FindDirectChildrenOnly);
}

} // namespace

KeyboardFocus::KeyboardFocus(QWidget *widget, Shown shown)
    : QObject(widget)
    , m_widget(widget)
    , m_shown(shown)
{
    widget->installEventFilter(this);
}

bool KeyboardFocus::isVisibleOn(const QWidget *widget)
{
    const auto watchers = watchersOf(widget);
    return std::any_of(watchers.begin(), watchers.end(),
                       [](const auto *focus) { return focus->m_visible; });
}

void KeyboardFocus::handOver(const QWidget *from, QWidget *to)
{
    const auto watchers = watchersOf(from);
    const bool isByKeyboard = std::any_of(watchers.begin(), watchers.end(),
                                          [](const auto *focus) { return focus->m_byKeyboard; });
    if (isByKeyboard)
        give(to);
    else
        to->setFocus(Qt::OtherFocusReason);
}

void KeyboardFocus::give(QWidget *widget)
{
    const auto watchers = watchersOf(widget);
    for (auto *focus : watchers) {
        focus->m_byKeyboard = true;
        focus->setVisible(widget->hasFocus());
    }
    // Not as the tab key does, which selects all of a field's text.
    widget->setFocus(Qt::ActiveWindowFocusReason);
}

bool KeyboardFocus::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::FocusIn || event->type() == QEvent::FocusOut) {
        const auto reason = static_cast<QFocusEvent *>(event)->reason();
        const bool comesBack =
            reason == Qt::ActiveWindowFocusReason || reason == Qt::PopupFocusReason;
        if (event->type() == QEvent::FocusOut) {
            // It may as well be a popup that closes and gives the focus to its own control.
            const auto *next = QApplication::focusWidget();
            const bool isElsewhere =
                next && next != m_widget && next->window() == m_widget->window();
            setVisible(m_visible && reason == Qt::PopupFocusReason && !isElsewhere);
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
