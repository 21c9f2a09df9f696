#include "look/Colors.h"

#include "look/Shades.h"

using namespace Shades;

namespace {

constexpr Pair strongHairline{{0x7A7A82}, {0xA0A0A8}};

QColor in(const QPalette &palette, const Pair &pair)
{
    return in(schemeOf(palette), pair);
}

/// For roles that stand out more where that is asked for.
QColor in(const QPalette &palette, const Pair &usual, const Pair &more)
{
    return in(palette, contrastOf(palette) == Contrast::More ? more : usual);
}

} // namespace

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
    return in(palette, {{0xE2E2E6}, {0x38383C}}, strongHairline);
}

QColor paneEdge(const QPalette &palette)
{
    return in(palette, of(contrastOf(palette), edges));
}

QColor sheetHairline(const QPalette &palette)
{
    return in(palette, {{0xE2E2E6}, {0x45454B}}, strongHairline);
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
    return in(palette, {{0xB2202B}, {0xFF9A92}});
}

QColor rowHover(const QPalette &palette)
{
    return in(palette, {{black, 4}, {white, 6}});
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
    return in(palette, {{black, 6}, {white, 8}});
}

QColor iconButtonPressed(const QPalette &palette)
{
    return in(palette, {{black, 12}, {white, 12}});
}

QColor menuHover(const QPalette &palette)
{
    return in(palette, {{black, 7}, {white, 9}});
}

QColor accountFill(const QPalette &palette)
{
    return in(palette, {{black, 4}, {black, 4}});
}

QColor accountOpen(const QPalette &palette)
{
    return in(palette, {{black, 10}, {white, 12}});
}

QColor buttonFill(const QPalette &palette)
{
    return in(palette, {{black, 6}, {black, 6}});
}

QColor buttonPressed(const QPalette &palette)
{
    return in(palette, {{black, 12}, {black, 12}});
}

QColor buttonLine(const QPalette &palette)
{
    return in(palette, {{black, 8}, {black, 8}}, of(Contrast::More, edges));
}

QColor buttonLift(const QPalette &palette)
{
    return in(palette, {{white, 0}, {white, 12}});
}

QColor accountLift(const QPalette &palette)
{
    return in(palette, {{white, 0}, {white, 7}});
}

QColor controlEdge(const QPalette &palette)
{
    return in(palette, {{black, 0}, {black, 0}}, of(Contrast::More, edges));
}

QColor chipPlate(const QPalette &palette)
{
    return in(palette, {{white}, {0xB8B8BE}});
}

QColor segmentFill(const QPalette &palette)
{
    return in(palette, {{white}, {0x56565D}});
}

QColor segmentShadow(const QPalette &palette)
{
    return in(palette, {{black, 18}, {black, 24}});
}

QColor dim(const QPalette &palette)
{
    return in(palette, {{black, 18}, {black, 36}});
}

QColor cardEdge(const QPalette &palette)
{
    return in(palette, {{black, 12}, {white, 12}}, of(Contrast::More, edges));
}

QColor cardShadow(const QPalette &palette)
{
    return in(palette, {{black, 20}, {black, 50}});
}

QColor popupShadow(const QPalette &palette)
{
    return in(palette, {{black, 22}, {black, 56}});
}

QColor scrollThumb(const QPalette &palette)
{
    return in(palette, {{black, 18}, {white, 20}}, of(Contrast::More, edges));
}

QColor spinnerTrack(const QPalette &palette)
{
    return in(palette, {{black, 10}, {white, 14}});
}
