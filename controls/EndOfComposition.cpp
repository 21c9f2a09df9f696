#include "controls/EndOfComposition.h"

#include <QCoreApplication>
#include <QGuiApplication>
#include <QInputMethod>
#include <QInputMethodEvent>
#include <QKeyEvent>
#include <QWidget>

EndOfComposition::EndOfComposition(QWidget *field)
    : QObject(field)
    , m_field(field)
{
    field->installEventFilter(this);
}

bool EndOfComposition::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::InputMethod) {
        m_isComposing = !static_cast<QInputMethodEvent *>(event)->preeditString().isEmpty();
    } else if (event->type() == QEvent::FocusOut) {
        m_isComposing = false;
    } else if (event->type() == QEvent::KeyPress && m_isComposing
               && static_cast<QKeyEvent *>(event)->matches(QKeySequence::Cancel)) {
        QGuiApplication::inputMethod()->reset();
        QInputMethodEvent nothing;
        QCoreApplication::sendEvent(m_field, &nothing);
        return true;
    }
    return QObject::eventFilter(watched, event);
}
