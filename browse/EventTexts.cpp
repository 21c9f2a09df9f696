#include "browse/EventTexts.h"

#include <optional>

bool isPresent(const std::optional<QString> &text)
{
    return text && !text->isEmpty();
}

std::optional<QString> shownDate(const Event &event, const Calendar &calendar)
{
    if (isPresent(event.date_texte))
        return event.date_texte;
    if (event.starts_at)
        return calendar.moment(*event.starts_at);
    return {};
}

QString whenAndWhere(const std::optional<QString> &date, const Event &event)
{
    QStringList texts;
    for (const auto &text : {date, event.heure_texte, event.lieu}) {
        if (isPresent(text))
            texts.append(*text);
    }
    return texts.join(u", ");
}
