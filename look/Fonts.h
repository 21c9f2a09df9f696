#pragma once

#include <QFont>

/// How much larger than drawn all type must be on a desktop whose own font has this size in pixels:
/// 1 up to a quarter above 13, then in proportion, since such a desktop asks for large type.
qreal typeFactor(qreal desktopPixelSize);

/// The desktop's own family at `px` pixels, grown by the desktop's type factor.
QFont appFont(qreal px, QFont::Weight weight = QFont::Normal);

/// A length that must grow with the type (line heights, control heights).
int scaled(int px);

/// The height of a line of text: the font's own, and at least the one drawn for its size
/// (13 -> 18, 12 -> 16, ...), so that usual fonts give the same page.
int lineHeight(const QFont &font);
