#pragma once

#include <QObject>

/// Knows a held key where the toolkit does not. On X11 a key that is held down is let go and
/// pressed again at one and the same moment, time after time; where the letting go is handled
/// before the press has arrived, the toolkit takes that for a new press, and what is to act once
/// acts again. As a filter of the application's events this makes it the repetition it is, and
/// keeps it from shortcuts.
class HeldKeys : public QObject {
    Q_OBJECT

public:
    using QObject::QObject;

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    quint32 m_releasedKey = 0; ///< by its place on the keyboard
    quint64 m_releasedAt = 0; ///< in milliseconds of the window system's clock
};
