#include "browse/TagPalette.h"

#include "platform/Text.h"

#include <QHash>
#include <QHashSeed>

namespace TagPalette {

const std::array<QColor, 6> &colors()
{
    static const std::array<QColor, 6> list = {
        QColor::fromRgbF(0.95f, 0.45f, 0.25f), QColor::fromRgbF(0.20f, 0.55f, 0.95f),
        QColor::fromRgbF(0.18f, 0.72f, 0.50f), QColor::fromRgbF(0.78f, 0.36f, 0.92f),
        QColor::fromRgbF(0.96f, 0.76f, 0.18f), QColor::fromRgbF(0.92f, 0.30f, 0.45f),
    };
    return list;
}

const QColor &color(QStringView tag, size_t seed)
{
    const auto hash = static_cast<qint64>(qHash(canonical(tag.toString()), seed));
    // Negated as unsigned: the smallest signed value has no positive counterpart.
    const quint64 magnitude =
        hash < 0 ? 0 - static_cast<quint64>(hash) : static_cast<quint64>(hash);
    return colors()[magnitude % colors().size()];
}

size_t processSeed()
{
    return QHashSeed::globalSeed();
}

} // namespace TagPalette
