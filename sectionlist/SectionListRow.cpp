#include "sectionlist/SectionListRow.h"

#include "look/Colors.h"
#include "look/Painting.h"
#include "sectionlist/SectionListMetrics.h"

#include <QGuiApplication>
#include <QMouseEvent>
#include <QPainter>
#include <QStyleHints>

namespace Metrics = SectionListMetrics;

SectionListRow::SectionListRow(QWidget *parent)
    : QWidget(parent)
{
    setFocusPolicy(Qt::ClickFocus);
}

QRect SectionListRow::contentRect() const
{
    return rect().adjusted(Metrics::textLeft, Metrics::rowPadding, -Metrics::textRight,
                           -Metrics::rowPadding);
}

void SectionListRow::press()
{
    if (isEnabled())
        Q_EMIT activated();
}

bool SectionListRow::event(QEvent *event)
{
    if (event->type() == QEvent::Hide || event->type() == QEvent::UngrabMouse)
        forgetPress();
    return QWidget::event(event);
}

void SectionListRow::keyPressEvent(QKeyEvent *event)
{
    const bool opens = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter
        || event->key() == Qt::Key_Space;
    if (!opens || (event->modifiers() & ~Qt::KeypadModifier) != 0) {
        event->ignore();
        return;
    }
    if (!event->isAutoRepeat())
        press();
}

void SectionListRow::mousePressEvent(QMouseEvent *event)
{
    if (event->button() != Qt::LeftButton) {
        event->ignore();
        return;
    }
    m_pressedAt = event->position().toPoint();
    setPress(true, true);
}

void SectionListRow::mouseMoveEvent(QMouseEvent *event)
{
    if (!m_armed)
        return;
    const QPoint at = event->position().toPoint();
    const int way = (at - m_pressedAt).manhattanLength();
    if (way >= QGuiApplication::styleHints()->startDragDistance())
        forgetPress(); // a drag, wherever it ends
    else
        setPress(true, isUnder(at));
}

void SectionListRow::mouseReleaseEvent(QMouseEvent *event)
{
    if (event->button() != Qt::LeftButton) {
        event->ignore();
        return;
    }
    const bool clicked = m_armed && isUnder(event->position().toPoint());
    forgetPress();
    if (clicked)
        press();
}

void SectionListRow::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    if (m_state.hairline) {
        const auto content = contentRect();
        painter.fillRect(content.left(), 0, content.width(), 1, hairline(palette()));
    }
    const auto fill =
        QRectF(rect()).adjusted(Metrics::fillLeft, Metrics::fillTop, 0, -Metrics::fillBottom);
    if (m_state.selected || m_pressed)
        fillRounded(painter, fill, Metrics::fillRadius, rowSelected(palette()));
    else if (m_state.hovered)
        fillRounded(painter, fill, Metrics::fillRadius, rowHover(palette()));
    if (m_state.focusRing)
        paintRing(painter, fill, Metrics::fillRadius, accentInk(palette()));
}

bool SectionListRow::setState(const State &state)
{
    if (state == m_state)
        return false;
    m_state = state;
    update();
    return true;
}

void SectionListRow::setPress(bool armed, bool pressed)
{
    m_armed = armed;
    if (pressed == m_pressed)
        return;
    m_pressed = pressed;
    update();
}

/// Whether the row itself is what one sees at the point: neither a button of its own nor what lies
/// over a row that is partly scrolled away.
bool SectionListRow::isUnder(QPoint point) const
{
    const auto *seen = window()->childAt(mapTo(window(), point));
    for (; seen && seen != this; seen = seen->parentWidget()) {
        if (seen->isWindow() || buttons().contains(seen))
            return false;
    }
    return seen != nullptr;
}
