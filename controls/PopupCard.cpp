#include "controls/PopupCard.h"

#include "look/Colors.h"
#include "look/Compositing.h"
#include "look/Painting.h"
#include "look/Shadow.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QScreen>
#include <QWidget>

namespace {

constexpr int edge = 1;

Shadow popupShadowOf(const QPalette &palette)
{
    return {8, 28, popupShadow(palette)};
}

} // namespace

QMargins popupMargins(bool isComposited)
{
    if (!isComposited)
        return {edge, edge, edge, edge};
    const Shadow shadow = popupShadowOf({});
    return {shadow.blur, shadow.blur - shadow.down, shadow.blur, shadow.reachBelow()};
}

void paintPopupCard(QPainter &painter, const QRectF &window, const QPalette &palette,
                    bool isComposited)
{
    const QRectF card = window.marginsRemoved(popupMargins(isComposited));
    if (!isComposited) {
        painter.fillRect(window, popupColor(palette));
        painter.fillRect(window, cardEdge(palette));
        painter.fillRect(card, popupColor(palette));
        return;
    }
    // The edge lies around the card, beneath its shadow, which takes the glare off a light one.
    const QRectF outer = card.adjusted(-edge, -edge, edge, edge);
    strokeRounded(painter, outer, popupRadius + edge, cardEdge(palette), edge);
    paintShadow(painter, card, popupShadowOf(palette));
    fillRounded(painter, card, popupRadius, popupColor(palette));
}

PopupCard::PopupCard(QWidget *window, QWidget *anchor, PopupAlignment alignment, int gap)
    : QObject(window)
    , m_window(window)
    , m_anchor(anchor)
    , m_alignment(alignment)
    , m_gap(gap)
    , m_isComposited(::isComposited())
{
    window->setWindowFlag(Qt::FramelessWindowHint);
    window->setWindowFlag(Qt::NoDropShadowWindowHint);
    window->setAttribute(Qt::WA_TranslucentBackground, m_isComposited);
    window->installEventFilter(this);
}

QRect PopupCard::rect() const
{
    return m_window->rect().marginsRemoved(margins());
}

QRect PopupCard::placeOfWindow(const QSize &window) const
{
    return placeOfCard(window).marginsAdded(margins());
}

QRect PopupCard::placeOfCard(const QSize &window) const
{
    const QRect anchor(m_anchor->mapToGlobal(QPoint()), m_anchor->size());
    return popupPlace(anchor, window.shrunkBy(margins()), m_alignment, m_gap,
                      m_anchor->screen()->availableGeometry());
}

void PopupCard::paint(QPainter &painter) const
{
    paintPopupCard(painter, m_window->rect(), m_window->palette(), m_isComposited);
}

bool PopupCard::eventFilter(QObject *watched, QEvent *event)
{
    if (watched != m_window) {
        // Not every desktop lets a popup be moved along.
        if (event->type() == QEvent::Resize || event->type() == QEvent::Move)
            m_window->close();
        return false;
    }
    if (event->type() == QEvent::Show) {
        m_below = m_anchor->window();
        m_below->installEventFilter(this);
    } else if (event->type() == QEvent::Hide && m_below) {
        m_below->removeEventFilter(this);
    }
    if (event->type() == QEvent::KeyPress) {
        if (!static_cast<QKeyEvent *>(event)->matches(QKeySequence::Cancel))
            return false;
        m_window->close();
        return true;
    }
    if (event->type() != QEvent::MouseButtonPress)
        return false;
    const auto *const press = static_cast<QMouseEvent *>(event);
    const QPoint at = press->position().toPoint();
    if (m_anchor->rect().contains(m_anchor->mapFromGlobal(press->globalPosition().toPoint())))
        m_window->setAttribute(Qt::WA_NoMouseReplay); // passed on, it would open it again
    // The toolkit closes a popup when the press is beside its window. What lies between the card
    // and the end of its shadow is the window for nobody but the toolkit.
    if (!m_window->rect().contains(at) || rect().contains(at))
        return false;
    m_window->close();
    return true;
}
