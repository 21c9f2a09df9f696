#pragma once

#include "editor/TagSet.h"
#include "model/Event.h"
#include "model/EventCreatePayload.h"
#include "platform/Calendar.h"

#include <optional>

/// What the event form holds. Two forms are equal when nothing would be seen to have changed.
struct EventForm {
    QString title;
    QString description;
    TagSet selectedTags;
    QString lieu;
    QString link;
    QString organisePar; ///< the entry chosen in the menu
    QString organiseParCustom; ///< typed by hand; counts when the entry is the one for others
    QString contactEmail;
    Instant eventDate; ///< its day is the event's
    Instant eventTime; ///< its hour and minute are the event's

    bool operator==(const EventForm &) const = default;
};

/// The tags that are offered. "Bibliotheque" is stored thus: tags are compared as texts.
const QStringList &availableTags();
/// The organisers that are offered, as they are stored; the last is the entry for others.
const QStringList &availableOrganisers();
/// "Autre"
const QString &otherOrganiser();

/// What the form opens with: `event` to change it, or samples to overwrite for a new one.
/// `userEmail` is the signed-in member's.
EventForm initialForm(const std::optional<Event> &event, const std::optional<QString> &userEmail,
                      Instant now);

/// Whether the organiser is the one typed by hand.
bool hasCustomOrganiser(const EventForm &form);
/// The organiser to be stored; may be empty.
QString effectiveOrganiser(const EventForm &form);

/// A text as an optional column takes it: trimmed, and none when nothing is left.
std::optional<QString> nilIfEmpty(const QString &text);

/// Whether there is enough to save: a title.
bool isComplete(const EventForm &form);

/// What is sent. `id`: the event's own, or a fresh one; `userId`: the signed-in member's.
EventCreatePayload payloadOf(const EventForm &form, const QString &id,
                             const std::optional<QString> &userId, const Calendar &calendar);

/// An identifier that no other event has: a random UUID, in upper case.
QString freshIdentifier();
