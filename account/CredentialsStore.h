#pragma once

#include "account/Credentials.h"
#include "platform/UserDefaults.h"

#include <optional>

/// The one remembered sign-in record: a JSON object with the members "email" and "password", under
/// `key` in the user defaults. The password is plain text there, by design.
namespace CredentialsStore {

inline constexpr QStringView key = u"aMorvelle.credentials";

/// The remembered record; none when there is none or it cannot be read, in which case it stays.
std::optional<Credentials> loadCredentials(const UserDefaults &defaults = UserDefaults::standard());

/// Replaces the remembered record; gives up in silence when it cannot be written.
void save(const Credentials &credentials, UserDefaults &defaults = UserDefaults::standard());

} // namespace CredentialsStore
