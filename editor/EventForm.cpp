#include "editor/EventForm.h"

#include "platform/Text.h"

#include <QUuid>

#include <algorithm>

const QStringList &availableTags()
{
    static const QStringList tags{
        QStringLiteral("Vie du village"), QStringLiteral("Spectacle"),
        QStringLiteral("Repas"),          QStringLiteral("Sport"),
        QStringLiteral("Jeune public"),   QStringLiteral("Bibliotheque"),
        QStringLiteral("Conférence"),     QStringLiteral("Projection"),
    };
    return tags;
}

const QStringList &availableOrganisers()
{
    static const QStringList organisers{
        QStringLiteral("Association Culturelle"),
        QStringLiteral("Amis de Brunelande"),
        QStringLiteral("Morvelle Animation"),
        QStringLiteral("Les Lentibulles"),
        QStringLiteral("Causarium"),
        QStringLiteral("Ainés rurauxs"),
        QStringLiteral("Les Parents d’élèves"),
        QStringLiteral("La Grange"),
        QStringLiteral("La Boulangerie"),
        QStringLiteral("AMAP Vertelune"),
        otherOrganiser(),
    };
    return organisers;
}

const QString &otherOrganiser()
{
    static const QString other = QStringLiteral("Autre");
    return other;
}

EventForm initialForm(const std::optional<Event> &event, const std::optional<QString> &userEmail,
                      Instant now)
{
    const Event from = event.value_or(Event());
    EventForm form;
    form.title = event ? from.titre : QStringLiteral("Atelier création");
    form.description = from.description.value_or(QStringLiteral("Pour les enfants de 4 à 11 ans."));
    // "Atelier" is not offered, and so stays with every event that starts from the samples.
    form.selectedTags = TagSet(
        from.tags.value_or(QStringList{QStringLiteral("Jeune public"), QStringLiteral("Atelier")}));
    form.lieu = from.lieu.value_or(QStringLiteral("Salle Vaudrelle"));
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
