#pragma once

#include "look/Fonts.h"

#include <QFontMetrics>

#include <algorithm>

/// How high a button or a picker is: 28 as drawn, and higher where the desktop's font is.
inline int labelledHeight()
{
    return 2 * 6 + std::max(scaled(16), QFontMetrics(appFont(13)).height());
}
