#include "backend/RequestParts.h"

#include "backend/SupabaseError.h"
#include "backend/TransportFailure.h"
#include "platform/Address.h"

#include <optional>

Header apiKey(const Configuration &configuration)
{
    return {"apikey", configuration.supabaseKey.toUtf8()};
}

Header bearer(const QString &token)
{
    return {"Authorization", "Bearer " + token.toUtf8()};
}

Header acceptJson()
{
    return {"Accept", "application/json"};
}

Header jsonContent()
{
    return {"Content-Type", "application/json"};
}

void requireComplete(const Configuration &configuration)
{
    if (!configuration.isComplete())
        throw SupabaseError::missingConfig();
}

QUrl addressOf(const Configuration &configuration, const QString &path)
{
    const std::optional<QUrl> address = requestAddress(configuration.supabaseURL + path);
    if (!address)
        throw SupabaseError::invalidURL(configuration.supabaseURL);
    if (!address->isValid())
        throw unknownHost(hostAsWritten(configuration.supabaseURL + path));
    return *address;
}
