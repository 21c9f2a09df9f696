#include "controls/PopupPlacement.h"

#include <algorithm>

QRect popupPlace(const QRect &anchor, const QSize &size, PopupAlignment alignment, int gap,
                 const QRect &screen)
{
    // QRect's right() and bottom() are the last pixels within it.
    const int anchorEnd = anchor.y() + anchor.height();
    const int screenEnd = screen.y() + screen.height();
    const int roomBelow = screenEnd - anchorEnd - gap;
    const int roomAbove = anchor.y() - gap - screen.y();
    const bool isBelow = size.height() <= roomBelow || roomBelow >= roomAbove;

    const int x =
        alignment == PopupAlignment::Left ? anchor.x() : anchor.x() + anchor.width() - size.width();
    const int y = isBelow ? anchorEnd + gap : anchor.y() - gap - size.height();
    const int lastX = screen.x() + screen.width() - size.width();
    const int lastY = screenEnd - size.height();
    return {{std::max(std::min(x, lastX), screen.x()), std::max(std::min(y, lastY), screen.y())},
            size};
}
