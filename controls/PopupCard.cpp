#include "controls/PopupCard.h"

#include "look/Colors.h"
#include "look/Painting.h"
#include "look/Shadow.h"

#include <QPainter>

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
