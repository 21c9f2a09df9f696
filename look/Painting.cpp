#include "look/Painting.h"

#include <QPainter>
#include <QWidget>

using namespace Qt::StringLiterals;

void fillRounded(QPainter &painter, const QRectF &rect, qreal radius, const QColor &color)
{
    if (color.alpha() == 0)
        return;
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(color);
    painter.drawRoundedRect(rect, radius, radius);
    painter.restore();
}

void strokeRounded(QPainter &painter, const QRectF &rect, qreal radius, const QColor &color,
                   qreal width)
{
    if (color.alpha() == 0)
        return;
    const qreal half = width / 2;
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(color, width));
    painter.setBrush(Qt::NoBrush);
    painter.drawRoundedRect(rect.adjusted(half, half, -half, -half), radius - half, radius - half);
    painter.restore();
}

void paintRing(QPainter &painter, const QRectF &rect, qreal radius, const QColor &ink)
{
    strokeRounded(painter, rect, radius, ink, ringWidth);
}

void setPlainToolTip(QWidget *widget, const QString &text)
{
    constexpr qsizetype mostCharacters = 2000; // more than a screen of tooltip helps nobody
    if (text.isEmpty()) {
        widget->setToolTip({});
        return;
    }
    QString shown = text;
    if (text.size() > mostCharacters)
        shown = text.first(mostCharacters) + QChar(0x2026);
    widget->setToolTip(u"<qt style='white-space: pre-wrap'>%1</qt>"_s.arg(shown.toHtmlEscaped()));
}
