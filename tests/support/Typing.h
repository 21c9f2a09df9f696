#pragma once

#include <QApplication>
#include <QKeyEvent>
#include <QTest>
#include <QWheelEvent>
#include <QWindow>

/// Types a text letter by letter, as a keyboard of any layout does. (QTest::keyClicks knows ASCII.)
inline void type(QWidget *widget, const QString &text)
{
    for (const QChar letter : text)
        QTest::sendKeyEvent(QTest::Click, widget, Qt::Key_unknown, QString(letter), Qt::NoModifier);
}

/// What a keyboard sends while a key stays down and repeats itself, without the end of it.
inline void repeat(QWidget *widget, Qt::Key key, int times = 3)
{
    for (int i = 0; i < times; ++i) {
        for (const auto type : {QEvent::KeyRelease, QEvent::KeyPress}) {
            QKeyEvent event(type, key, Qt::NoModifier, {}, true);
            QCoreApplication::sendEvent(widget, &event);
        }
    }
}

/// Presses a key, holds it down for a while and lets it go.
inline void hold(QWidget *widget, Qt::Key key)
{
    QTest::keyPress(widget, key);
    repeat(widget, key);
    QTest::keyRelease(widget, key);
}

/// Turns the wheel over a widget, one step towards the person.
inline void turnWheel(QWidget *over)
{
    QWidget *window = over->window();
    const QPointF at = over->mapTo(window, over->rect().center());
    QWheelEvent event(at, window->mapToGlobal(at), {}, {0, -120}, Qt::NoButton, Qt::NoModifier,
                      Qt::NoScrollPhase, false);
    QSpontaneKeyEvent::setSpontaneous(&event); // else Qt does not hand it on to parents
    qApp->notify(window->windowHandle(), &event);
}
