#pragma once

#include "editor/EventForm.h"
#include "model/Event.h"
#include "model/EventCreatePayload.h"
#include "platform/Calendar.h"

#include <QDateTime>

using namespace Qt::StringLiterals;

/// What the tests of the event form's rules start from.
namespace NewForm {

inline Instant at(const QString &iso)
{
    return {QDateTime::fromString(iso, Qt::ISODate).toMSecsSinceEpoch()};
}

inline const Instant now = at(u"2026-11-14T13:30:20Z"_s);

inline Event bareEvent()
{
    Event event;
    event.id = u"7"_s;
    event.titre = u"Bal"_s;
    return event;
}

inline EventCreatePayload sent(const EventForm &form, const QString &zone = u"Europe/Paris"_s)
{
    return payloadOf(form, u"7"_s, u"moi"_s, Calendar(u"fr_FR"_s, zone));
}

inline EventForm newForm()
{
    return initialForm({}, u"camille@exemple.fr"_s, now);
}

} // namespace NewForm
