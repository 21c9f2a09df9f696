#pragma once

#include "service/Keys.h"
#include "service/Reply.h"

#include <optional>
#include <string>

/// On whose behalf the database is asked.
struct Caller {
    std::string role;
    std::string claims; ///< JSON
    bool isSignedIn() const { return role != "anon"; }
};

/// Throws the Reply for a request without one of the project's keys.
void requireProjectKey(const Call &call, const Keys &keys);

/// The token of the "Authorization" header. Nothing without one, or when it repeats the project's
/// key of the same request, which is no token but may stand there.
std::optional<std::string> bearerOf(const Call &call);

/// The caller of the REST interface; throws the Reply for a token that is not accepted.
Caller callerOf(const Call &call, const Keys &keys);
