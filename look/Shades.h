#pragma once

#include "look/ColorScheme.h"

#include <QColor>

#include <array>

/// The colours that both the palette and what is derived from it are made of.
namespace Shades {

/// 0xRRGGBB, and how much of it in per cent.
struct Shade {
    QRgb rgb;
    int percent = 100;
};

/// One role in both schemes.
struct Pair {
    Shade light;
    Shade dark;
};

inline QColor in(ColorScheme scheme, const Pair &pair)
{
    const Shade &shade = scheme == ColorScheme::Dark ? pair.dark : pair.light;
    QColor color(shade.rgb);
    color.setAlphaF(static_cast<float>(shade.percent) / 100);
    return color;
}

inline constexpr QRgb black = 0x000000;
inline constexpr QRgb white = 0xFFFFFF;

inline constexpr Pair window{{0xF2F2F4}, {0x2D2D31}};
inline constexpr Pair surface{{white}, {0x232326}};
inline constexpr Pair popup{{white}, {0x313136}};
inline constexpr Pair text{{0x1C1C1F}, {0xF2F2F4}};
inline constexpr Pair accentFill{{0x1F5DB2}, {0x3A73C4}};
inline constexpr Pair ink{{0x1F5DB2}, {0x93BCF7}};

// By the contrast: usual, more.
inline constexpr std::array secondary{Pair{{0x5C5C65}, {0xBCBCC4}}, Pair{{0x3D3D45}, {0xE0E0E6}}};
inline constexpr std::array edges{Pair{{0xD8D8DD}, {0x38383C}}, Pair{{0x606068}, {0xB4B4BC}}};

inline const Pair &of(Contrast contrast, const std::array<Pair, 2> &pairs)
{
    return pairs.at(static_cast<size_t>(contrast));
}

} // namespace Shades
