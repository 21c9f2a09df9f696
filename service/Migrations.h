#pragma once

#include "service/Database.h"

#include <filesystem>
#include <optional>
#include <string>

/// Brings the database to what `supabase` (a folder in the shape that the Supabase CLI knows) says:
/// each file of migrations/ once, in the order of their names, and seed.sql once. Accounts that the
/// seed brings without a password are given `seedPassword`. Throws StartFailure.
void migrate(Connection &connection, const std::filesystem::path &supabase,
             const std::optional<std::string> &seedPassword);
