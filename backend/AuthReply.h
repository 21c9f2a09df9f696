#pragma once

#include "backend/AuthRecords.h"
#include "backend/Reply.h"
#include "backend/Session.h"

/// What the authentication interface granted. Throws SupabaseError `invalidResponse`, `authError`
/// with the service's reason (`fallback` where it gives none), or UndecodableReply for a success
/// that holds no such record.
AuthResponse granted(const Reply &reply, const QString &fallback);

/// The session that `response` begins for the member who typed `email`.
Session sessionOf(const AuthResponse &response, const QString &email);
