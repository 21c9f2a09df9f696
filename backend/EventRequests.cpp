#include "backend/EventRequests.h"

#include "backend/RequestParts.h"
#include "backend/SupabaseError.h"
#include "model/Event.h"

using namespace Qt::StringLiterals;

namespace {

QString eventsPath()
{
    return u"/rest/v1/events"_s;
}

QString rowPath(const QString &id)
{
    return eventsPath() + u"?id=eq."_s + id;
}

QString requiredToken(const Session &session)
{
    if (!session.accessToken)
        throw SupabaseError::authError(u"Vous devez être connecté."_s);
    return *session.accessToken;
}

Request payloadRequest(const QByteArray &verb, const Configuration &configuration,
                       const Session &session, const QString &path,
                       const EventCreatePayload &payload)
{
    const QString token = requiredToken(session);
    requireComplete(configuration);
    return {verb,
            addressOf(configuration, path),
            {apiKey(configuration),
             bearer(token),
             jsonContent(),
             acceptJson(),
             {"Prefer", "return=representation"}},
            payload.toJson()};
}

} // namespace

Request fetchEventsRequest(const Configuration &configuration, const Session &session)
{
    requireComplete(configuration);
    QUrl address = addressOf(configuration, eventsPath());
    address.setQuery("select="_L1 + QLatin1StringView(eventColumns)
                     + "&order=starts_at.asc.nullslast"_L1);
    return {"GET",
            address,
            {apiKey(configuration), bearer(session.accessToken.value_or(configuration.supabaseKey)),
             acceptJson()},
            {}};
}

Request createEventRequest(const Configuration &configuration, const Session &session,
                           const EventCreatePayload &payload)
{
    return payloadRequest("POST", configuration, session, eventsPath(), payload);
}

Request updateEventRequest(const Configuration &configuration, const Session &session,
                           const QString &id, const EventCreatePayload &payload)
{
    return payloadRequest("PATCH", configuration, session, rowPath(id), payload);
}

Request deleteEventRequest(const Configuration &configuration, const Session &session,
                           const QString &id)
{
    const QString token = requiredToken(session);
    requireComplete(configuration);
    return {"DELETE",
            addressOf(configuration, rowPath(id)),
            {apiKey(configuration), bearer(token), acceptJson()},
            {}};
}
