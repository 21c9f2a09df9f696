#include "look/Fonts.h"

#include <QFontDatabase>
#include <QFontInfo>
#include <QFontMetricsF>
#include <QGuiApplication>
#include <QScreen>

#include <algorithm>
#include <array>
#include <cmath>

namespace {

/// The size in pixels that the application's body text is drawn at.
constexpr qreal bodySize = 13;

const QFont &desktopFont()
{
    static const QFont font = QFontDatabase::systemFont(QFontDatabase::GeneralFont);
    return font;
}

/// The size on the screen. Reckoned where it can be: to ask for the font itself loads it, which
/// takes a fiftieth of the start, and nothing is drawn in it.
int pixelSizeOf(const QFont &font)
{
    if (font.pixelSize() > 0)
        return font.pixelSize();
    const QScreen *screen = QGuiApplication::primaryScreen();
    if (!screen)
        return QFontInfo(font).pixelSize();
    constexpr qreal pointsInInch = 72;
    return qRound(font.pointSizeF() * screen->logicalDotsPerInchY() / pointsInInch);
}

qreal desktopFactor()
{
    static const qreal factor = typeFactor(pixelSizeOf(desktopFont()));
    return factor;
}

/// The line height drawn for a size, itself in proportion for sizes in between.
qreal drawnLineHeight(qreal px)
{
    struct Step {
        qreal size;
        qreal height;
    };
    static constexpr std::array steps{Step{24, 30}, Step{22, 28}, Step{20, 24}, Step{17, 22},
                                      Step{13, 18}, Step{12, 16}, Step{11, 14}};
    for (const auto &step : steps) {
        if (px >= step.size)
            return step.height * px / step.size;
    }
    return px * 14 / 11;
}

} // namespace

qreal typeFactor(qreal desktopPixelSize)
{
    const qreal factor = desktopPixelSize / bodySize;
    return factor > 1.25 ? factor : 1;
}

QFont appFont(qreal px, QFont::Weight weight)
{
    QFont font = desktopFont();
    font.setPixelSize(qRound(px * desktopFactor()));
    font.setWeight(weight);
    return font;
}

int scaled(int px)
{
    return qRound(px * desktopFactor());
}

int lineHeight(const QFont &font)
{
    const qreal drawn = drawnLineHeight(QFontInfo(font).pixelSize());
    return static_cast<int>(std::ceil(std::max(drawn, QFontMetricsF(font).height())));
}
