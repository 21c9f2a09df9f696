#pragma once

#include <QColor>
#include <QStringView>
#include <array>

/// The six colours of tag chips.
namespace TagPalette {

const std::array<QColor, 6> &colors();

/// The colour of a tag. The same tag has the same colour wherever it shows during one run;
/// canonically equivalent spellings are the same tag. Colours may differ from run to run, as `seed`
/// does.
const QColor &color(QStringView tag, size_t seed);

/// This run's seed.
size_t processSeed();

} // namespace TagPalette
