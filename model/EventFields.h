#pragma once

#include "model/Event.h"

#include <array>
#include <string_view>

/// The fields of an event, in the order of the record, which is that of the columns too.
enum EventField {
    Id,
    Titre,
    Description,
    Tags,
    Lieu,
    Link,
    OrganisePar,
    Status,
    ContactEmail,
    UserId,
    Ts,
    DateTexte,
    HeureTexte,
    StartsAt,
    FieldCount,
};

inline constexpr std::array<std::string_view, FieldCount> fieldKeys{
    "id",     "titre",         "description", "tags", "lieu",       "link",        "organise_par",
    "status", "contact_email", "user_id",     "ts",   "date_texte", "heure_texte", "starts_at",
};

constexpr bool areTheColumnsAskedFor()
{
    std::string_view columns = eventColumns;
    for (const std::string_view key : fieldKeys) {
        if (!columns.starts_with(key))
            return false;
        columns.remove_prefix(key.size());
        if (columns.starts_with(','))
            columns.remove_prefix(1);
    }
    return columns.empty();
}
static_assert(areTheColumnsAskedFor());
