#include "look/ApplicationPalette.h"

#include "look/Shades.h"

#include <initializer_list>

using namespace Shades;

QPalette applicationPalette(ColorScheme scheme, Contrast contrast)
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
    set({QPalette::PlaceholderText}, in(scheme, of(contrast, secondary)));
    set({QPalette::Link, QPalette::LinkVisited}, in(scheme, ink));
    palette.setColor(QPalette::Window, in(scheme, window));
    palette.setColor(QPalette::Base, in(scheme, surface));
    palette.setColor(QPalette::AlternateBase, in(scheme, surface));
    palette.setColor(QPalette::ToolTipBase, in(scheme, popup));
    palette.setColor(QPalette::Highlight, in(scheme, accentFill));
    palette.setColor(QPalette::HighlightedText, QColor(white));
    palette.setColor(QPalette::Mid, in(scheme, of(contrast, edges)));
    return palette;
}

ColorScheme schemeOf(const QPalette &palette)
{
    return palette.color(QPalette::Active, QPalette::Window).lightness() < 128 ? ColorScheme::Dark
                                                                               : ColorScheme::Light;
}

Contrast contrastOf(const QPalette &palette)
{
    const QColor more = in(schemeOf(palette), of(Contrast::More, edges));
    return palette.color(QPalette::Active, QPalette::Mid) == more ? Contrast::More
                                                                  : Contrast::Usual;
}
