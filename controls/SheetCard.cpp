#include "controls/SheetCard.h"

#include "look/Colors.h"
#include "look/Shadow.h"

#include <QPainter>
#include <QPainterPath>

namespace {

constexpr int radius = 10;
constexpr int edge = 1;

/// Square above, round below: the card hangs from the top of its window.
QPainterPath cardPath(const QRectF &card, qreal corner)
{
    QPainterPath path;
    path.addRoundedRect(card.adjusted(0, -2 * corner, 0, 0), corner, corner);
    QPainterPath below;
    below.addRect(card);
    return path.intersected(below);
}

Shadow shadowOf(const QPalette &palette)
{
    const bool dark = schemeOf(palette) == ColorScheme::Dark;
    return dark ? Shadow{12, 34, cardShadow(palette)} : Shadow{10, 30, cardShadow(palette)};
}

} // namespace

void SheetCard::paint(QPainter &painter, const QRect &window, const QRect &card,
                      const QPalette &palette, const QRect &dirty)
{
    painter.setRenderHint(QPainter::Antialiasing);
    // A cursor that blinks within the card needs no more.
    if (card.adjusted(0, 0, 0, -radius).contains(dirty)) {
        painter.fillRect(dirty, windowColor(palette));
        return;
    }
    painter.fillRect(window, dim(palette));
    // The edge lies around the card, beneath its shadow, which takes the glare off a light one.
    const QRectF outer = QRectF(card).adjusted(-edge, 0, edge, edge);
    painter.fillPath(cardPath(outer, radius + edge).subtracted(cardPath(card, radius)),
                     cardEdge(palette));
    const int blur = shadowOf(palette).blur;
    painter.drawPixmap(card.left() - blur, card.top() - blur,
                       shadow(card, palette, painter.device()->devicePixelRatioF()));
    painter.fillPath(cardPath(card, radius), windowColor(palette));
}

const QPixmap &SheetCard::shadow(const QRect &card, const QPalette &palette, qreal ratio)
{
    const Shadow shadow = shadowOf(palette);
    const QRgb color = shadow.color.rgba();
    if (m_card == card.size() && m_color == color && m_shadow.devicePixelRatio() == ratio
        && !m_shadow.isNull())
        return m_shadow;
    m_card = card.size();
    m_color = color;
    const QSize size = card.size() + QSize(2 * shadow.blur, shadow.blur + shadow.reachBelow());
    m_shadow = QPixmap(size * ratio);
    m_shadow.setDevicePixelRatio(ratio);
    m_shadow.fill(Qt::transparent);
    QPainter painter(&m_shadow);
    paintShadow(painter, QRectF({qreal(shadow.blur), qreal(shadow.blur)}, QSizeF(card.size())),
                shadow);
    return m_shadow;
}
