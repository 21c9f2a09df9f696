#pragma once

class QAbstractButton;
class QKeyEvent;
class QWidget;

/// Whether a key is one that presses what has the focus: Return, Enter, Space or Select.
bool isPressKey(const QKeyEvent *event);

/// A held key presses once: whatever a key above repeats in `widget` is taken and does nothing, so
/// that it neither presses again nor reaches what opened meanwhile or lies behind.
void pressOnce(QWidget *widget);

/// The same, and Return and Enter press `button` as Space does, whether it is a default button or
/// not.
void pressWithReturn(QAbstractButton *button);
