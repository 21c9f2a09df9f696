#pragma once

#include "service/AuthError.h"
#include "service/Gateway.h"
#include "service/Tokens.h"

#include <nlohmann/json.hpp>

/// What requests to the accounts' interface carry. All readers throw AuthError for what the hosted
/// service would refuse.

struct Credentials {
    std::string email;
    std::string password;
};

/// For signing in: any address and password are good enough to be compared.
Credentials credentialsFrom(const Call &call);
/// For a new account: the address has the form of one and the password is long enough.
Credentials newCredentialsFrom(const Call &call);
std::string refreshTokenFrom(const Call &call);

/// Whose token the "Authorization" header holds.
struct Bearer {
    std::string subject;
    std::string session;
};
Bearer bearerFrom(const Call &call, const Keys &keys);
