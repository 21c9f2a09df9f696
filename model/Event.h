#pragma once

#include "platform/Instant.h"

#include <QList>
#include <QString>
#include <QStringList>
#include <optional>

/// One row of the service's `events` table as it is read; `eventColumns` names its columns.
/// Texts are kept as stored.
struct Event {
    QString id;
    QString titre;
    std::optional<QString> description;
    std::optional<QStringList> tags;
    std::optional<QString> lieu;
    std::optional<QString> link;
    std::optional<QString> organise_par;
    std::optional<QString> status;
    std::optional<QString> contact_email;
    std::optional<QString> user_id;
    std::optional<Instant> ts;
    std::optional<QString> date_texte;
    std::optional<QString> heure_texte;
    std::optional<Instant> starts_at;

    /// What orders the event: `starts_at`, else midnight GMT of the day that `date_texte` is, else
    /// none. `heure_texte` and `ts` take no part: the service orders by `starts_at` alone, and a
    /// time of day without an instant has no zone to be placed in.
    std::optional<Instant> sortDate() const;

    bool operator==(const Event &) const = default;
};

/// The columns of an event, in the order of its fields, as the events query asks for them.
inline constexpr char eventColumns[] =
    "id,titre,description,tags,lieu,link,organise_par,status,contact_email,user_id,ts,"
    "date_texte,heure_texte,starts_at";
