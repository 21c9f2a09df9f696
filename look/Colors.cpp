#include "look/Colors.h"

namespace {

/// One role in both schemes, as 0xRRGGBB and per cent.
struct Pair {
    QRgb light;
    int lightPercent;
    QRgb dark;
    int darkPercent;
};

QColor shade(QRgb rgb, int percent)
{
    QColor color(rgb);
    color.setAlphaF(static_cast<float>(percent) / 100);
    return color;
}

QColor in(ColorScheme scheme, const Pair &pair)
{
    return scheme == ColorScheme::Dark ? shade(pair.dark, pair.darkPercent)
                                       : shade(pair.light, pair.lightPercent);
}

QColor in(const QPalette &palette, const Pair &pair)
{
    return in(schemeOf(palette), pair);
}

constexpr QRgb black = 0x000000;
constexpr QRgb white = 0xFFFFFF;

constexpr Pair window{0xF2F2F4, 100, 0x2D2D31, 100};
constexpr Pair surface{white, 100, 0x232326, 100};
constexpr Pair popup{white, 100, 0x313136, 100};
constexpr Pair text{0x1C1C1F, 100, 0xF2F2F4, 100};
constexpr Pair secondary{0x5C5C65, 100, 0xBCBCC4, 100};
constexpr Pair accentFill{0x1F5DB2, 100, 0x3A73C4, 100};
constexpr Pair ink{0x1F5DB2, 100, 0x93BCF7, 100};

} // namespace

QPalette applicationPalette(ColorScheme scheme)
{
    QPalette palette(in(scheme, window));
    const auto set = [&](std::initializer_list<QPalette::ColorRole> roles, const QColor &color) {
        QColor faded = color;
        faded.setAlphaF(static_cast<float>(disabledOpacity));
        for (const auto role : roles) {
            palette.setColor(role, color);
            palette.setColor(QPalette::Disabled, role, faded);
        }
    };
    set({QPalette::WindowText, QPalette::Text, QPalette::ButtonText, QPalette::ToolTipText},
        in(scheme, text));
    set({QPalette::PlaceholderText}, in(scheme, secondary));
    set({QPalette::Link, QPalette::LinkVisited}, in(scheme, ink));
    palette.setColor(QPalette::Window, in(scheme, window));
    palette.setColor(QPalette::Base, in(scheme, surface));
    palette.setColor(QPalette::AlternateBase, in(scheme, surface));
    palette.setColor(QPalette::ToolTipBase, in(scheme, popup));
    palette.setColor(QPalette::Highlight, in(scheme, accentFill));
    palette.setColor(QPalette::HighlightedText, QColor(white));
    return palette;
}

ColorScheme schemeOf(const QPalette &palette)
{
    return palette.color(QPalette::Active, QPalette::Window).lightness() < 128 ? ColorScheme::Dark
                                                                               : ColorScheme::Light;
}

QColor windowColor(const QPalette &palette)
{
    return palette.color(QPalette::Active, QPalette::Window);
}

QColor surfaceColor(const QPalette &palette)
{
    return palette.color(QPalette::Active, QPalette::Base);
}

QColor popupColor(const QPalette &palette)
{
    return in(palette, popup);
}

QColor primaryText(const QPalette &palette)
{
    return palette.color(QPalette::Active, QPalette::WindowText);
}

QColor secondaryText(const QPalette &palette)
{
    return palette.color(QPalette::Active, QPalette::PlaceholderText);
}

QColor hairline(const QPalette &palette)
{
    return in(palette, {0xE2E2E6, 100, 0x38383C, 100});
}

QColor paneEdge(const QPalette &palette)
{
    return in(palette, {0xD8D8DD, 100, 0x38383C, 100});
}

QColor sheetHairline(const QPalette &palette)
{
    return in(palette, {0xE2E2E6, 100, 0x45454B, 100});
}

QColor accent(const QPalette &palette)
{
    return palette.color(QPalette::Active, QPalette::Highlight);
}

QColor accentPressed(const QPalette &palette)
{
    QColor color = accent(palette);
    color.setAlphaF(0.85F);
    return color;
}

QColor accentText(const QPalette &palette)
{
    return palette.color(QPalette::Active, QPalette::HighlightedText);
}

QColor accentInk(const QPalette &palette)
{
    return palette.color(QPalette::Active, QPalette::Link);
}

QColor red(const QPalette &palette)
{
    return in(palette, {0xB2202B, 100, 0xFF9A92, 100});
}

QColor rowHover(const QPalette &palette)
{
    return in(palette, {black, 4, white, 6});
}

QColor rowSelected(const QPalette &palette)
{
    const bool dark = schemeOf(palette) == ColorScheme::Dark;
    QColor color = dark ? accentInk(palette) : accent(palette);
    color.setAlphaF(dark ? 0.16F : 0.10F);
    return color;
}

QColor iconButtonHover(const QPalette &palette)
{
    return in(palette, {black, 6, white, 8});
}

QColor iconButtonPressed(const QPalette &palette)
{
    return in(palette, {black, 12, white, 12});
}

QColor menuHover(const QPalette &palette)
{
    return in(palette, {black, 7, white, 9});
}

QColor accountFill(const QPalette &palette)
{
    return in(palette, {black, 4, black, 4});
}

QColor accountOpen(const QPalette &palette)
{
    return in(palette, {black, 10, white, 12});
}

QColor buttonFill(const QPalette &palette)
{
    return in(palette, {black, 6, black, 6});
}

QColor buttonPressed(const QPalette &palette)
{
    return in(palette, {black, 12, black, 12});
}

QColor buttonLine(const QPalette &palette)
{
    return in(palette, {black, 8, black, 8});
}

QColor buttonLift(const QPalette &palette)
{
    return in(palette, {white, 0, white, 12});
}

QColor accountLift(const QPalette &palette)
{
    return in(palette, {white, 0, white, 7});
}

QColor chipPlate(const QPalette &palette)
{
    return in(palette, {white, 100, 0xB8B8BE, 100});
}

QColor segmentFill(const QPalette &palette)
{
    return in(palette, {white, 100, 0x56565D, 100});
}

QColor segmentShadow(const QPalette &palette)
{
    return in(palette, {black, 18, black, 24});
}

QColor dim(const QPalette &palette)
{
    return in(palette, {black, 18, black, 36});
}

QColor cardEdge(const QPalette &palette)
{
    return in(palette, {black, 12, white, 12});
}

QColor cardShadow(const QPalette &palette)
{
    return in(palette, {black, 20, black, 50});
}

QColor popupShadow(const QPalette &palette)
{
    return in(palette, {black, 22, black, 56});
}

QColor scrollThumb(const QPalette &palette)
{
    return in(palette, {black, 18, white, 20});
}

QColor spinnerTrack(const QPalette &palette)
{
    return in(palette, {black, 10, white, 14});
}
