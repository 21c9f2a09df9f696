#pragma once

#include "account/Credentials.h"
#include "backend/Configuration.h"
#include "backend/Request.h"

// Both send the address and the password exactly as typed, and no "Authorization". They throw
// SupabaseError `missingConfig` or `invalidURL`, or TransportError for a host that cannot be.

Request signInRequest(const Configuration &configuration, const Credentials &credentials);
Request signUpRequest(const Configuration &configuration, const Credentials &credentials);
