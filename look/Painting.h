#pragma once

#include <QColor>
#include <QRectF>

class QPainter;
class QString;
class QWidget;

/// A filled rounded rectangle, antialiased, without line.
void fillRounded(QPainter &painter, const QRectF &rect, qreal radius, const QColor &color);

/// A line of `width` just inside the edge of a rounded rectangle.
void strokeRounded(QPainter &painter, const QRectF &rect, qreal radius, const QColor &color,
                   qreal width = 1);

/// The focus ring: 2 px of accent ink just inside `rect`, whose corners have `radius`.
void paintRing(QPainter &painter, const QRectF &rect, qreal radius, const QColor &ink);

inline constexpr int ringWidth = 2; ///< in pixels
inline constexpr int ringGap = 1; ///< between a button and its ring

/// Shows `text` as the widget's tooltip, letter by letter, wrapped, and bounded in length;
/// an empty text takes it away.
void setPlainToolTip(QWidget *widget, const QString &text);
