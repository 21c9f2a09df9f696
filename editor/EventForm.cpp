#include "editor/EventForm.h"

#include "platform/Text.h"

#include <QUuid>

#include <algorithm>
#include <utility>

using namespace Qt::StringLiterals;

const QStringList &availableTags()
{
    static const QStringList tags{
        u"Vie du village"_s, u"Spectacle"_s,    u"Repas"_s,      u"Sport"_s,
        u"Jeune public"_s,   u"Bibliotheque"_s, u"Conférence"_s, u"Projection"_s,
    };
    return tags;
}

const QStringList &availableOrganisers()
{
    static const QStringList organisers{
        u"Association Culturelle"_s, u"Amis de Brunelande"_s, u"Morvelle Animation"_s,
        u"Les Lentibulles"_s,        u"Causarium"_s,          u"Ainés rurauxs"_s,
        u"Les Parents d’élèves"_s,   u"La Grange"_s,          u"La Boulangerie"_s,
        u"AMAP Vertelune"_s,         otherOrganiser(),
    };
    return organisers;
}

const QString &otherOrganiser()
{
    static const QString other = u"Autre"_s;
    return other;
}

EventForm initialForm(const std::optional<Event> &event, const std::optional<QString> &userEmail,
                      Instant now)
{
    const Event from = event.value_or(Event());
    EventForm form;
    form.title = event ? from.titre : u"Atelier création"_s;
    form.description = from.description.value_or(u"Pour les enfants de 4 à 11 ans."_s);
    // "Atelier" is not offered, and so stays with every event that starts from the samples.
    form.selectedTags = TagSet(from.tags.value_or(QStringList{u"Jeune public"_s, u"Atelier"_s}));
    form.lieu = from.lieu.value_or(u"Salle Vaudrelle"_s);
    form.link = from.link.value_or(QString());
    form.organisePar = from.organise_par.value_or(availableOrganisers().first());
    const auto isOrganiser = [&form](const QString &offered) {
        return sameText(offered, form.organisePar);
    };
    if (std::none_of(availableOrganisers().begin(), availableOrganisers().end(), isOrganiser))
        form.organiseParCustom = std::exchange(form.organisePar, otherOrganiser());
    form.contactEmail = from.contact_email.value_or(userEmail.value_or(QString()));
    form.eventDate = from.sortDate().value_or(now);
    form.eventTime = from.starts_at.value_or(now);
    return form;
}

bool hasCustomOrganiser(const EventForm &form)
{
    return form.organisePar == otherOrganiser();
}

QString effectiveOrganiser(const EventForm &form)
{
    return hasCustomOrganiser(form) ? trimmed(form.organiseParCustom) : form.organisePar;
}

std::optional<QString> nilIfEmpty(const QString &text)
{
    QString rest = trimmed(text);
    if (rest.isEmpty())
        return {};
    return rest;
}

bool isComplete(const EventForm &form)
{
    return !trimmed(form.title).isEmpty();
}

EventCreatePayload payloadOf(const EventForm &form, const QString &id,
                             const std::optional<QString> &userId, const Calendar &calendar)
{
    return {
        .id = id,
        .user_id = userId,
        .titre = trimmed(form.title),
        .description = nilIfEmpty(form.description),
        .tags = form.selectedTags.sorted(),
        .lieu = nilIfEmpty(form.lieu),
        .link = nilIfEmpty(form.link),
        .organise_par = nilIfEmpty(effectiveOrganiser(form)),
        .contact_email = nilIfEmpty(form.contactEmail),
        .date_texte = calendar.dayText(form.eventDate),
        .heure_texte = calendar.timeText(form.eventTime),
        .starts_at = EventCreatePayload::isoDateTime(form.eventDate, form.eventTime, calendar),
    };
}

QString freshIdentifier()
{
    return QUuid::createUuid().toString(QUuid::WithoutBraces).toUpper();
}
