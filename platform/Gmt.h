#pragma once

#include <QTimeZone>

/// What tells QDateTime that a moment is in GMT, in the way that its version does not warn of.
#if QT_VERSION < QT_VERSION_CHECK(6, 5, 0)
inline constexpr Qt::TimeSpec inGmt = Qt::UTC;
#else
inline constexpr QTimeZone::Initialization inGmt = QTimeZone::UTC;
#endif
