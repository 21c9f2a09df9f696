#pragma once

#include "platform/Calendar.h"

#include <QByteArray>
#include <QString>
#include <QStringList>
#include <optional>

/// The record written to the service's `events` table, on creating an event and on changing one:
/// the columns that the service does not set itself, in the order in which they are written.
///
/// `date_texte`, `heure_texte` and `starts_at` must come from the same day and time: the first two
/// as Calendar::dayText and Calendar::timeText, the third from isoDateTime.
struct EventCreatePayload {
    QString id;
    std::optional<QString> user_id;
    QString titre;
    std::optional<QString> description;
    std::optional<QStringList> tags;
    std::optional<QString> lieu;
    std::optional<QString> link;
    std::optional<QString> organise_par;
    std::optional<QString> contact_email;
    std::optional<QString> date_texte;
    std::optional<QString> heure_texte;
    std::optional<QString> starts_at;

    /// The day of `from` and the time of day of `time`, as `calendar` shows them, in GMT and
    /// without fraction: 2025-06-14T16:30:00Z.
    static QString isoDateTime(Instant from, Instant time,
                               const Calendar &calendar = Calendar::current());

    /// The payload as one JSON object. What is absent is left out and never written as null: the
    /// service then leaves that column as it was.
    QByteArray toJson() const;

    bool operator==(const EventCreatePayload &) const = default;
};
