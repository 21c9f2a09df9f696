#include "controls/Symbols.h"

#include <QPaintDevice>
#include <QPainter>
#include <QPixmapCache>
#include <QSvgRenderer>

namespace {

QString fileName(Symbol symbol)
{
    switch (symbol) {
    case Symbol::Calendar:
        return QStringLiteral("calendar");
    case Symbol::Clock:
        return QStringLiteral("clock");
    case Symbol::MapPin:
        return QStringLiteral("map-pin");
    case Symbol::Person:
        return QStringLiteral("person");
    case Symbol::People:
        return QStringLiteral("people");
    case Symbol::Envelope:
        return QStringLiteral("envelope");
    case Symbol::Plus:
        return QStringLiteral("plus");
    case Symbol::Pencil:
        return QStringLiteral("pencil");
    case Symbol::Trash:
        return QStringLiteral("trash");
    case Symbol::ChevronDown:
        return QStringLiteral("chevron-down");
    case Symbol::ChevronLeft:
        return QStringLiteral("chevron-left");
    case Symbol::ChevronRight:
        return QStringLiteral("chevron-right");
    case Symbol::Stepper:
        return QStringLiteral("stepper");
    case Symbol::Checkmark:
        return QStringLiteral("checkmark");
    }
    Q_UNREACHABLE();
}

QPixmap drawn(Symbol symbol, qreal size, const QColor &color, qreal ratio)
{
    const int pixels = qCeil(size * ratio);
    QPixmap pixmap(pixels, pixels);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    QSvgRenderer(QStringLiteral(":/controls/symbols/%1.svg").arg(fileName(symbol)))
        .render(&painter, QRectF(0, 0, size * ratio, size * ratio));
    painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
    painter.fillRect(pixmap.rect(), color);
    painter.end();
    pixmap.setDevicePixelRatio(ratio);
    return pixmap;
}

} // namespace

QPixmap symbolPixmap(Symbol symbol, qreal size, const QColor &color, qreal ratio)
{
    const QString key = QStringLiteral("symbol/%1/%2/%3/%4")
                            .arg(static_cast<int>(symbol))
                            .arg(size)
                            .arg(ratio)
                            .arg(color.rgba(), 0, 16);
    QPixmap pixmap;
    if (!QPixmapCache::find(key, &pixmap)) {
        pixmap = drawn(symbol, size, color, ratio);
        QPixmapCache::insert(key, pixmap);
    }
    return pixmap;
}

void paintSymbol(QPainter &painter, Symbol symbol, const QRectF &rect, qreal size,
                 const QColor &color)
{
    const qreal ratio = painter.device()->devicePixelRatioF();
    const auto snapped = [ratio](qreal at) { return qRound(at * ratio) / ratio; };
    const QPointF at(snapped(rect.center().x() - size / 2), snapped(rect.center().y() - size / 2));
    painter.drawPixmap(at, symbolPixmap(symbol, size, color, ratio));
}
