#pragma once

#include <QColor>
#include <QPixmap>
#include <QRectF>

class QPainter;

/// The line symbols, drawn on a grid of 16 (Person: 18) with round ends.
enum class Symbol {
    Calendar,
    Clock,
    MapPin,
    Person,
    People,
    Envelope,
    Plus,
    Pencil,
    Trash,
    ChevronDown,
    ChevronLeft,
    ChevronRight,
    Stepper,
    Checkmark,
};

/// The symbol in one colour, `size` device-independent pixels wide and high, sharp at `ratio`
/// device pixels each. Kept in QPixmapCache. Main thread.
QPixmap symbolPixmap(Symbol symbol, qreal size, const QColor &color, qreal ratio);

/// Paints the symbol centred in `rect`, snapped to device pixels.
void paintSymbol(QPainter &painter, Symbol symbol, const QRectF &rect, qreal size,
                 const QColor &color);
