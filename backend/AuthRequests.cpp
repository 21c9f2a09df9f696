#include "backend/AuthRequests.h"

#include "backend/RequestParts.h"

using namespace Qt::StringLiterals;

namespace {

Request authRequest(const Configuration &configuration, const QString &path,
                    const Credentials &credentials)
{
    requireComplete(configuration);
    return {"POST",
            addressOf(configuration, path),
            {apiKey(configuration), jsonContent(), acceptJson()},
            encodeCredentials(credentials)};
}

} // namespace

Request signInRequest(const Configuration &configuration, const Credentials &credentials)
{
    return authRequest(configuration, u"/auth/v1/token?grant_type=password"_s, credentials);
}

Request signUpRequest(const Configuration &configuration, const Credentials &credentials)
{
    return authRequest(configuration, u"/auth/v1/signup"_s, credentials);
}
