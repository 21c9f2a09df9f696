#include "model/Event.h"

#include "model/InstantReader.h"

std::optional<Instant> Event::sortDate() const
{
    if (starts_at)
        return starts_at;
    if (date_texte)
        return readDay(*date_texte);
    return std::nullopt;
}
