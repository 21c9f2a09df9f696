#pragma once

#include <string>
#include <variant>

/// A token (JWT, HS256) that carries `claims`, a JSON object.
std::string signedToken(const std::string &claims, const std::string &secret);

/// Why a token is not accepted.
enum class TokenFault { Malformed, WrongSignature, Expired };

/// The claims of a token as JSON text. `now` is in seconds since 1970.
std::variant<std::string, TokenFault> claimsOf(const std::string &token, const std::string &secret,
                                               long now);
