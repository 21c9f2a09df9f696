#include "controls/FieldFrame.h"

#include "look/Colors.h"
#include "look/FocusRing.h"
#include "look/Fonts.h"
#include "look/Painting.h"

#include <QPainter>

namespace {

constexpr int line = 1;

} // namespace

int fieldHeight()
{
    return scaled(28);
}

void paintFieldFrame(QPainter &painter, const QRectF &rect, const QPalette &palette)
{
    fillRounded(painter, rect.adjusted(line, line, -line, -line), fieldRadius - line,
                surfaceColor(palette));
    strokeRounded(painter, rect, fieldRadius, buttonLine(palette), line);
}

FocusRing *addFieldRing(QWidget *field)
{
    // Half of it lies over the line.
    return new FocusRing(field, fieldRadius, -line, KeyboardFocus::Shown::Always);
}
