#include "controls/PopupCard.h"

#include "controls/Colors.h"
#include "controls/Painting.h"
#include "controls/Shadow.h"

#include <QPainter>

namespace {

constexpr int edge = 1;

Shadow popupShadowOf(const QPalette &palette)
{
    return {6, 20, popupShadow(palette)};
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
    paintShadow(painter, card, popupShadowOf(palette));
    // The edge lies around the card, over its shadow.
    const QRectF outer = card.adjusted(-edge, -edge, edge, edge);
    fillRounded(painter, card, popupRadius, popupColor(palette));
    strokeRounded(painter, outer, popupRadius + edge, cardEdge(palette), edge);
}
