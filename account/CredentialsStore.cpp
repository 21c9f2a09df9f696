#include "account/CredentialsStore.h"

#include <variant>

std::optional<Credentials> CredentialsStore::loadCredentials(const UserDefaults &defaults)
{
    const auto data = defaults.data(key.toString());
    if (!data)
        return std::nullopt;
    const auto decoded = decodeCredentials(*data);
    const auto *const credentials = std::get_if<Credentials>(&decoded);
    return credentials ? std::optional(*credentials) : std::nullopt;
}

void CredentialsStore::save(const Credentials &credentials, UserDefaults &defaults)
{
    defaults.set(key.toString(), encodeCredentials(credentials));
}
