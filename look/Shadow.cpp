#include "look/Shadow.h"

#include <QImage>
#include <QPaintDevice>
#include <QPainter>

#include <cmath>
#include <vector>

namespace {

/// The blurred profile of a span: a box convolved with a Gaussian of half the blur.
std::vector<double> profile(double from, double to, double start, double step, int count,
                            double blur)
{
    const double spread = blur / 2 * std::sqrt(2.0);
    std::vector<double> values(static_cast<size_t>(count));
    double at = start + step / 2;
    for (double &value : values) {
        value = (std::erf((at - from) / spread) - std::erf((at - to) / spread)) / 2;
        at += step;
    }
    return values;
}

} // namespace

void paintShadow(QPainter &painter, const QRectF &card, const Shadow &shadow)
{
    const double ratio = painter.device()->devicePixelRatioF();
    const QRectF cast = card.translated(0, shadow.down);
    const QRectF area =
        cast.adjusted(-shadow.blur, -shadow.blur, shadow.blur, shadow.blur).toAlignedRect();
    QImage image((area.size() * ratio).toSize(), QImage::Format_ARGB32_Premultiplied);
    image.setDevicePixelRatio(ratio);
    // A Gaussian blur of a box is the product of those of its two spans.
    const auto across =
        profile(cast.left(), cast.right(), area.left(), 1 / ratio, image.width(), shadow.blur);
    const auto down =
        profile(cast.top(), cast.bottom(), area.top(), 1 / ratio, image.height(), shadow.blur);
    QColor color = shadow.color;
    const double strength = color.alphaF();
    for (int y = 0; y < image.height(); ++y) {
        auto *line = reinterpret_cast<QRgb *>(image.scanLine(y));
        for (int x = 0; x < image.width(); ++x) {
            color.setAlphaF(static_cast<float>(strength * down[static_cast<size_t>(y)]
                                               * across[static_cast<size_t>(x)]));
            line[x] = qPremultiply(color.rgba());
        }
    }
    painter.drawImage(area.topLeft(), image);
}
