#include "look/PressKeys.h"

#include <QAbstractButton>
#include <QKeyEvent>

namespace {

bool isReturn(const QKeyEvent *event)
{
    return event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
}

class PressKeys final : public QObject {
public:
    PressKeys(QWidget *widget, QAbstractButton *button)
        : QObject(widget)
        , m_button(button)
    {
        widget->installEventFilter(this);
    }

    bool eventFilter(QObject *, QEvent *event) override
    {
        if (event->type() != QEvent::KeyPress)
            return false;
        const auto *const key = static_cast<QKeyEvent *>(event);
        if (isPressKey(key) && key->isAutoRepeat())
            return true;
        if (!m_button || !isReturn(key))
            return false;
        m_button->click();
        return true;
    }

private:
    QAbstractButton *m_button;
};

} // namespace

bool isPressKey(const QKeyEvent *event)
{
    return isReturn(event) || event->key() == Qt::Key_Space || event->key() == Qt::Key_Select;
}

void pressOnce(QWidget *widget)
{
    new PressKeys(widget, nullptr);
}

void pressWithReturn(QAbstractButton *button)
{
    new PressKeys(button, button);
}
