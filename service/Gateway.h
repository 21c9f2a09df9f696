#pragma once

#include "service/Keys.h"
#include "service/Reply.h"

/// On whose behalf the database is asked.
struct Caller {
    std::string role;
    std::string claims; ///< JSON
    bool isSignedIn() const { return role != "anon"; }
};

/// Throws the Reply for a request without the project's key.
void requireProjectKey(const Call &call, const Keys &keys);

/// The token of the "Authorization" header, empty without one.
std::string bearerOf(const Call &call);

/// The caller of the REST interface; throws the Reply for a token that is not accepted.
Caller callerOf(const Call &call, const Keys &keys);
