#include "controls/Popover.h"

#include "controls/PopupCard.h"
#include "look/Accessibility.h"
#include "look/Colors.h"
#include "look/KeyboardFocus.h"

#include <QGuiApplication>
#include <QPainter>
#include <QVBoxLayout>
#include <QWindow>

#include <algorithm>
#include <utility>

namespace {

constexpr int cardWidth = 220;
constexpr int padding = 12;
constexpr int gap = 6;

QWidget *firstOnTabsWay(const QWidget *window)
{
    for (QWidget *widget = window->nextInFocusChain(); widget != window;
         widget = widget->nextInFocusChain()) {
        if ((widget->focusPolicy() & Qt::TabFocus) && widget->isEnabled() && !widget->isHidden())
            return widget;
    }
    return nullptr;
}

} // namespace

Popover::Popover(QWidget *anchor)
    : QWidget(anchor, Qt::Popup)
    , m_anchor(anchor)
    , m_card(new PopupCard(this, anchor, PopupAlignment::Right, gap))
    , m_column(new QVBoxLayout(this))
{
    // A click on the anchor would open it again.
    setAttribute(Qt::WA_NoMouseReplay);
    setAccessibleName(anchor->accessibleName());
    setAccessibleRole(this, QAccessible::Dialog);
    m_column->setContentsMargins(m_card->margins() + QMargins(padding, padding, padding, padding));
    m_column->setSizeConstraint(QLayout::SetNoConstraint);
}

void Popover::setContent(QWidget *content)
{
    if (QWidget *old = std::exchange(m_content, content)) {
        m_column->removeWidget(old);
        // It may be the one whose button asked for this.
        old->hide();
        old->deleteLater();
    }
    m_column->addWidget(content);
}

void Popover::open()
{
    m_isOpen = true;
    place();
    if (KeyboardFocus::isVisibleOn(m_anchor))
        giveFocus();
    show();
}

QRect Popover::card() const
{
    return m_card->rect();
}

bool Popover::event(QEvent *event)
{
    const bool isTaken = QWidget::event(event);
    if (event->type() == QEvent::LayoutRequest && m_isOpen)
        place();
    return isTaken;
}

void Popover::hideEvent(QHideEvent *event)
{
    QWidget::hideEvent(event);
    if (event->spontaneous() || !m_isOpen)
        return;
    m_isOpen = false;
    // Where the keyboard went to the popup's window, it must not end with it.
    if (!QGuiApplication::focusWindow() || QGuiApplication::focusWindow() == windowHandle())
        m_anchor->window()->activateWindow();
    // As a popup that closes, so that the anchor's ring shows if it did before.
    m_anchor->setFocus(Qt::PopupFocusReason);
    Q_EMIT closed();
}

void Popover::paintEvent(QPaintEvent *event)
{
    QPainter painter(this);
    // No shadow anew for what changes within the card, a pressed button say.
    if (m_column->contentsRect().contains(event->rect()))
        painter.fillRect(event->rect(), popupColor(palette()));
    else
        m_card->paint(painter);
}

QSize Popover::naturalSize() const
{
    const QMargins margins = m_card->margins();
    const int width = std::max(cardWidth + margins.left() + margins.right(),
                               m_column->totalMinimumSize().width());
    const int height = m_column->hasHeightForWidth() ? m_column->totalHeightForWidth(width)
                                                     : m_column->totalSizeHint().height();
    return {width, height};
}

void Popover::place()
{
    setGeometry(m_card->placeOfWindow(naturalSize()));
}

void Popover::giveFocus()
{
    if (QWidget *first = firstOnTabsWay(this))
        KeyboardFocus::give(first);
}
