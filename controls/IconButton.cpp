#include "controls/IconButton.h"

#include "look/Fonts.h"
#include "look/KeyboardFocus.h"
#include "look/Painting.h"
#include "look/PressKeys.h"
#include "look/Reach.h"

#include <QPainter>

IconButton::IconButton(Symbol symbol, const QString &name, ColorRole color, QWidget *parent)
    : QAbstractButton(parent)
    , m_symbol(symbol)
    , m_color(color)
    , m_focus(new KeyboardFocus(this))
{
    setAttribute(Qt::WA_Hover);
    setFocusPolicy(Qt::StrongFocus);
    pressWithReturn(this);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    setAccessibleName(name);
    setAccessibleRole(this, QAccessible::Button);
    setPlainToolTip(this, name);
}

QSize IconButton::sizeHint() const
{
    return {scaled(24), scaled(24)};
}

void IconButton::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    if (looksDisabled(this))
        painter.setOpacity(disabledOpacity);
    else if (isDown())
        fillRounded(painter, rect(), 6, iconButtonPressed(palette()));
    else if (underMouse())
        fillRounded(painter, rect(), 6, iconButtonHover(palette()));
    paintSymbol(painter, m_symbol, rect(), scaled(16), m_color(palette()));
    if (m_focus->isVisible())
        paintRing(painter, rect(), 6, accentInk(palette()));
}
