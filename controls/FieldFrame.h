#pragma once

#include <QRectF>

class FocusRing;
class QPainter;
class QPalette;
class QWidget;

/// What all entry fields share: their height, their padding, their fill and line, their ring.

inline constexpr int fieldRadius = 6;
inline constexpr int fieldPadding = 8; ///< between the edge and the text, left and right

/// The height of a field of one line.
int fieldHeight();

/// Fill and line of an entry field. The line lies over what is below the field, not over its fill.
void paintFieldFrame(QPainter &painter, const QRectF &rect, const QPalette &palette);

/// The ring that stands in place of the line while the field has the focus, however it came.
FocusRing *addFieldRing(QWidget *field);
