#pragma once

#include "service/Options.h"
#include "service/Reply.h"

#include <string>

/// A refusal of the accounts' interface.
struct AuthError {
    int status;
    std::string code;
    std::string message;
    /// Whether it refuses a grant; the older shape tells these, and only these, as OAuth does.
    bool isGrant = false;
};

/// `call` names, in a header, the release of the interface that its sender knows.
Reply replyFor(const AuthError &error, AuthErrorShape shape, const Call &call);
