#pragma once

#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

/// A request, apart from how it came.
struct Call {
    std::string verb;
    std::string path;
    std::multimap<std::string, std::string> query; ///< decoded
    std::map<std::string, std::string> headers; ///< names in lower case
    std::string body;
    std::string peer; ///< the caller's address

    std::string header(const std::string &name) const;
};

/// The answer to a request. A reply thrown as an exception is the answer, too.
struct Reply {
    int status = 200;
    std::string body;
    std::vector<std::pair<std::string, std::string>> headers;
    std::string contentType = "application/json; charset=utf-8";
};

struct DatabaseError;

/// An error in the words of the REST interface.
Reply restError(int status, const std::string &code, const std::string &message,
                const std::optional<std::string> &details = std::nullopt,
                const std::optional<std::string> &hint = std::nullopt);

/// What PostgreSQL said, as the REST interface tells it. `isSignedIn` tells "may not" (403) from
/// "who are you" (401).
Reply restError(const DatabaseError &error, bool isSignedIn);

/// The refusal of what a hosted project offers and this service does not. It says so, instead of
/// doing something else.
Reply notOffered(const std::string &what);

/// An error of the gateway, which knows a message and sometimes a hint.
Reply gatewayError(int status, const std::string &message,
                   const std::optional<std::string> &hint = std::nullopt);
