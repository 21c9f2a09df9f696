#pragma once

#include "look/ColorScheme.h"

#include <QPalette>

/// The palette to hand to QApplication::setPalette. It carries the colours that it has a role for;
/// the others are derived from it, so that setting another palette is all that a change of scheme
/// takes.
QPalette applicationPalette(ColorScheme scheme, Contrast contrast = Contrast::Usual);

/// The scheme that a palette belongs to, by the lightness of its window.
ColorScheme schemeOf(const QPalette &palette);

/// The contrast that a palette was made with, which its edges tell.
Contrast contrastOf(const QPalette &palette);

/// How much of a control is seen while it is disabled.
inline constexpr qreal disabledOpacity = 0.45;
