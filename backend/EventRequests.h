#pragma once

#include "backend/Configuration.h"
#include "backend/Request.h"
#include "backend/Session.h"
#include "model/EventCreatePayload.h"

/// Reads all events: as the signed-in member, else as the public. Throws SupabaseError
/// `missingConfig` or `invalidURL`, or TransportError for a host that cannot be.
Request fetchEventsRequest(const Configuration &configuration, const Session &session);

// What only members may do. These throw SupabaseError, and look in this order: `authError` when
// nobody is signed in (who is signed out reads that, even where nothing is configured),
// `missingConfig`, `invalidURL`; then TransportError, for a host that cannot be.

/// Writes a new event.
Request createEventRequest(const Configuration &configuration, const Session &session,
                           const EventCreatePayload &payload);
/// Changes the event with this identifier, which is put into the address as it stands.
Request updateEventRequest(const Configuration &configuration, const Session &session,
                           const QString &id, const EventCreatePayload &payload);
/// Deletes the event with this identifier, which is put into the address as it stands.
Request deleteEventRequest(const Configuration &configuration, const Session &session,
                           const QString &id);
