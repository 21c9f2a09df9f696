#pragma once

#include <QApplication>
#include <QTest>
#include <QWheelEvent>
#include <QWindow>

/// Types a text letter by letter, as a keyboard of any layout does. (QTest::keyClicks knows ASCII.)
inline void type(QWidget *widget, const QString &text)
{
    for (const QChar letter : text)
        QTest::sendKeyEvent(QTest::Click, widget, Qt::Key_unknown, QString(letter), Qt::NoModifier);
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
