#pragma once

#include <QColor>
#include <QRectF>

class QPainter;

/// A shadow as designs give it: `down` pixels below what casts it, blurred over `blur` pixels.
struct Shadow {
    int down;
    int blur;
    QColor color;

    /// How far it reaches below what casts it; to the sides it reaches `blur`.
    int reachBelow() const { return down + blur; }
};

/// Paints the shadow that `card` casts, also where the card will cover it.
void paintShadow(QPainter &painter, const QRectF &card, const Shadow &shadow);
