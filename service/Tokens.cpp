#include "service/Tokens.h"

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <jwt.h>
#include <memory>
#include <new>

namespace {

using Token = std::unique_ptr<jwt_t, decltype(&jwt_free)>;
using JwtText = std::unique_ptr<char, decltype(&std::free)>;

const unsigned char *bytesOf(const std::string &text)
{
    return reinterpret_cast<const unsigned char *>(text.data());
}

} // namespace

std::string signedToken(const std::string &claims, const std::string &secret)
{
    jwt_t *made = nullptr;
    if (jwt_new(&made) != 0)
        throw std::bad_alloc();
    const Token token(made, jwt_free);
    jwt_add_grants_json(made, claims.c_str());
    jwt_set_alg(made, JWT_ALG_HS256, bytesOf(secret), static_cast<int>(secret.size()));
    const JwtText text(jwt_encode_str(made), std::free);
    if (!text)
        throw std::bad_alloc();
    return text.get();
}

std::variant<std::string, TokenFault> claimsOf(const std::string &token, const std::string &secret,
                                               long now)
{
    if (std::count(token.begin(), token.end(), '.') != 2)
        return TokenFault::Malformed;
    jwt_t *read = nullptr;
    const int fault =
        jwt_decode(&read, token.c_str(), bytesOf(secret), static_cast<int>(secret.size()));
    const Token owner(read, jwt_free);
    // The library takes an unsigned token (alg none) for a valid one of its kind.
    if (fault != 0 || jwt_get_alg(read) != JWT_ALG_HS256)
        return TokenFault::WrongSignature;
    errno = 0;
    const long expiry = jwt_get_grant_int(read, "exp");
    if (errno == 0 && expiry <= now)
        return TokenFault::Expired;
    const JwtText claims(jwt_get_grants_json(read, nullptr), std::free);
    return std::string(claims ? claims.get() : "{}");
}
