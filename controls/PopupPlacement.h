#pragma once

#include <QRect>

/// Which edges of a popup and its anchor are in line.
enum class PopupAlignment { Left, Right };

/// Where a popup of `size` stands, all in the screen's pixels: `gap` below its anchor; above it
/// where there is no room below and more above; and within `screen` in any case, its top left
/// corner first.
QRect popupPlace(const QRect &anchor, const QSize &size, PopupAlignment alignment, int gap,
                 const QRect &screen);
