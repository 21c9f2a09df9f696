#include "look/Symbols.h"

#include <QPaintDevice>
#include <QPainter>
#include <QPixmapCache>
#include <QSvgRenderer>

using namespace Qt::StringLiterals;

namespace {

QString fileName(Symbol symbol)
{
    switch (symbol) {
    case Symbol::Calendar:
        return u"calendar"_s;
    case Symbol::Clock:
        return u"clock"_s;
    case Symbol::MapPin:
        return u"map-pin"_s;
    case Symbol::Person:
        return u"person"_s;
    case Symbol::People:
        return u"people"_s;
    case Symbol::Envelope:
        return u"envelope"_s;
    case Symbol::Plus:
        return u"plus"_s;
    case Symbol::Pencil:
        return u"pencil"_s;
    case Symbol::Trash:
        return u"trash"_s;
    case Symbol::ChevronDown:
        return u"chevron-down"_s;
    case Symbol::ChevronLeft:
        return u"chevron-left"_s;
    case Symbol::ChevronRight:
        return u"chevron-right"_s;
    case Symbol::Stepper:
        return u"stepper"_s;
    case Symbol::Checkmark:
        return u"checkmark"_s;
    }
    Q_UNREACHABLE();
}

QPixmap drawn(Symbol symbol, qreal size, const QColor &color, qreal ratio)
{
    const int pixels = qCeil(size * ratio);
    QPixmap pixmap(pixels, pixels);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    QSvgRenderer(u":/look/symbols/%1.svg"_s.arg(fileName(symbol)))
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
    const QString key = u"symbol/%1/%2/%3/%4"_s.arg(static_cast<int>(symbol))
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
