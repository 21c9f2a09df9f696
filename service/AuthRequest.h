#pragma once

#include "service/AuthError.h"
#include "service/Gateway.h"
#include "service/Tokens.h"

#include <nlohmann/json.hpp>
#include <optional>
#include <string>

// What requests to the accounts' interface carry. All readers throw AuthError for what the hosted
// service would refuse.

struct Credentials {
    std::string email;
    std::string password;
};

/// For signing in: any address and password are good enough to be compared.
Credentials credentialsFrom(const Call &call);

struct NewAccount {
    std::string email;
    std::string password;
    nlohmann::json data; ///< an object, empty when the account comes without
};
/// The address has the form of one, and the password its length.
NewAccount newAccountFrom(const Call &call);

struct AccountChange {
    std::optional<std::string> email;
    std::optional<std::string> password;
    std::optional<nlohmann::json> data; ///< an object: to be set, or with null to be removed
};
AccountChange accountChangeFrom(const Call &call);

std::string refreshTokenFrom(const Call &call);

/// The address in the body, which has the form of one.
std::string emailFrom(const Call &call);

/// What is to be sent once more: "signup" or "email_change".
struct Resending {
    std::string type;
    std::string email;
};
Resending resendingFrom(const Call &call);

/// What came in a mail: its type and its token.
struct MailToken {
    std::string type;
    std::string token;
};
MailToken mailTokenFrom(const Call &call);

/// Whose token the "Authorization" header holds.
struct Bearer {
    std::string subject;
    std::string session;
};
Bearer bearerFrom(const Call &call, const Keys &keys);
