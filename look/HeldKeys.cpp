#include "look/HeldKeys.h"

#include <QCoreApplication>
#include <QKeyEvent>

bool HeldKeys::eventFilter(QObject *watched, QEvent *event)
{
    const QEvent::Type type = event->type();
    if (type != QEvent::KeyRelease && type != QEvent::KeyPress && type != QEvent::ShortcutOverride)
        return false;
    const auto &key = static_cast<const QKeyEvent &>(*event);
    if (type == QEvent::KeyRelease) {
        m_releasedKey = key.nativeScanCode();
        m_releasedAt = key.timestamp();
        return false;
    }
    // No hand is that fast, and what has no time or no place is not from a keyboard.
    const bool isRepetition = key.nativeScanCode() != 0 && key.nativeScanCode() == m_releasedKey
        && key.timestamp() != 0 && key.timestamp() == m_releasedAt;
    if (!isRepetition || key.isAutoRepeat())
        return false;
    if (type == QEvent::ShortcutOverride) {
        event->accept();
        return true;
    }
    QKeyEvent repetition(type, key.key(), key.modifiers(), key.nativeScanCode(),
                         key.nativeVirtualKey(), key.nativeModifiers(), key.text(), true,
                         static_cast<quint16>(key.count()));
    repetition.setTimestamp(key.timestamp());
    QCoreApplication::sendEvent(watched, &repetition);
    event->setAccepted(repetition.isAccepted());
    return true;
}
