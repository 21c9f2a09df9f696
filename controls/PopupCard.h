#pragma once

#include <QMargins>

class QPainter;
class QPalette;
class QRectF;

/// The card that menus and the popover are drawn on: popup colour, round corners, an edge around it
/// and a shadow. A window that shows one is larger than the card by these margins; it is
/// translucent where the desktop blends windows, else it is all card and edge, with square corners.

inline constexpr int popupRadius = 8;

/// What a window needs around its card.
QMargins popupMargins(bool isComposited);

/// Paints a whole window of such a card, with the margins above.
void paintPopupCard(QPainter &painter, const QRectF &window, const QPalette &palette,
                    bool isComposited);
