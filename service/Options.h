#pragma once

#include <filesystem>
#include <optional>
#include <string>

/// The two shapes in which the hosted service has told sign-in errors.
enum class AuthErrorShape { Current, Older };

/// What the command line asks for.
struct Options {
    std::filesystem::path data;
    std::filesystem::path supabase = AMORVELLE_SUPABASE_FOLDER;
    int port = 0; ///< 0 takes any free one
    std::optional<std::filesystem::path> readyFile;
    int maxRows = 1000; ///< most rows in one reply, as a hosted project has it
    int tokenSeconds = 3600;
    bool confirmEmail = false;
    int mailPause = 60; ///< seconds between two mails of a kind to an address
    bool renewsSeed = false; ///< lays the sample events around today once more
    AuthErrorShape authErrors = AuthErrorShape::Current;
    int rateLimit = 0; ///< sign-ins and sign-ups an address may try in five minutes; 0 for no limit
    std::optional<std::string> seedPassword;
};

extern const char usageText[];

/// Throws StartFailure on anything that is not understood.
Options optionsFrom(int count, char **arguments);
