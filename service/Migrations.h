#pragma once

#include "service/Database.h"
#include "service/Options.h"

/// Brings the database to what the options' `supabase` (a folder in the shape that the Supabase CLI
/// knows) says: each file of migrations/ once, in the order of their names, and seed.sql once, or
/// once more where it is to be renewed. Accounts that the seed brings without a password are given
/// the seed's. Throws StartFailure.
void migrate(Connection &connection, const Options &options);
