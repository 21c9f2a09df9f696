#pragma once

#include <QPalette>

/// The colours of the application. The palette carries those that it has a role for; the others are
/// derived from it, so that setting another palette is all that a change of scheme takes.
enum class ColorScheme { Light, Dark };

/// How far what is faint stands out: with more of it secondary text does so by 7:1 and more, and
/// every line and edge by 3:1.
enum class Contrast { Usual, More };

/// The palette to hand to QApplication::setPalette.
QPalette applicationPalette(ColorScheme scheme, Contrast contrast = Contrast::Usual);

/// The scheme that a palette belongs to, by the lightness of its window.
ColorScheme schemeOf(const QPalette &palette);

/// The contrast that a palette was made with, which its edges tell.
Contrast contrastOf(const QPalette &palette);

/// How much of a control is seen while it is disabled.
inline constexpr qreal disabledOpacity = 0.45;
