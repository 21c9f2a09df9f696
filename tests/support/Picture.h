#pragma once

#include <QColor>
#include <QImage>
#include <QPainter>
#include <QWidget>

using namespace Qt::StringLiterals;

/// What a widget paints, at `ratio` device pixels each, over its window's colour.
inline QImage picture(QWidget &widget, qreal ratio = 1)
{
    QImage image(widget.size() * ratio, QImage::Format_ARGB32_Premultiplied);
    image.setDevicePixelRatio(ratio);
    image.fill(widget.palette().color(QPalette::Active, QPalette::Window));
    widget.render(&image, {}, {}, QWidget::DrawChildren);
    return image;
}

/// `over` as it looks upon an opaque `under`.
inline QColor blended(const QColor &over, const QColor &under)
{
    const qreal a = over.alphaF();
    const auto mix = [a](int top, int bottom) { return qRound(top * a + bottom * (1 - a)); };
    return {mix(over.red(), under.red()), mix(over.green(), under.green()),
            mix(over.blue(), under.blue())};
}

/// Whether two colours are the same but for the rounding of a painter's blending.
inline bool alike(const QColor &a, const QColor &b)
{
    constexpr int rounding = 2;
    return qAbs(a.red() - b.red()) <= rounding && qAbs(a.green() - b.green()) <= rounding
        && qAbs(a.blue() - b.blue()) <= rounding;
}

/// Whether any pixel has the colour.
inline bool hasColor(const QImage &image, const QColor &color)
{
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            if (alike(image.pixelColor(x, y), color))
                return true;
        }
    }
    return false;
}

/// The colour in `part` of a picture, in its pixels, that stands out most from `under`. Where
/// letters are drawn several times their size it is theirs, since some stroke is wider than a
/// pixel.
inline QColor inkOf(const QImage &image, const QRect &part, const QColor &under)
{
    const auto distance = [&under](const QColor &color) {
        return qAbs(color.red() - under.red()) + qAbs(color.green() - under.green())
            + qAbs(color.blue() - under.blue());
    };
    QColor ink = under;
    for (int y = part.top(); y <= part.bottom(); ++y) {
        for (int x = part.left(); x <= part.right(); ++x) {
            const QColor color = image.pixelColor(x, y);
            if (distance(color) > distance(ink))
                ink = color;
        }
    }
    return ink;
}

/// Prints both colours when they differ.
#define COMPARE_COLORS(actual, expected)                                                           \
    QVERIFY2(alike(actual, expected),                                                              \
             qPrintable(u"%1, not %2"_s.arg(QColor(actual).name(), QColor(expected).name())))
