#pragma once

#include <QPixmap>
#include <QRect>

class QPainter;
class QPalette;

/// What a sheet paints: the dim over its window, and on it the card with its edge and its shadow.
class SheetCard {
public:
    /// Paints what lies in `dirty` of a sheet that fills `window`.
    void paint(QPainter &painter, const QRect &window, const QRect &card, const QPalette &palette,
               const QRect &dirty);

private:
    const QPixmap &shadow(const QRect &card, const QPalette &palette, qreal ratio);

    QPixmap m_shadow; ///< blurred once: what moves below a sheet would have it blurred at each step
    QSize m_card; ///< that casts it
    QRgb m_color = 0;
};
