#include "service/Keys.h"

#include "service/Files.h"
#include "service/StartFailure.h"
#include "service/Tokens.h"

#include <ctime>
#include <nlohmann/json.hpp>
#include <sys/random.h>

std::string randomText(std::size_t count)
{
    std::string bytes(count, '\0');
    if (getrandom(bytes.data(), bytes.size(), 0) != static_cast<ssize_t>(bytes.size()))
        throw StartFailure("the system gives no random bytes");
    constexpr char digits[] = "0123456789abcdef";
    std::string text;
    for (const char byte : bytes) {
        const auto value = static_cast<unsigned char>(byte);
        text += digits[value >> 4U];
        text += digits[value & 15U];
    }
    return text;
}

Keys keysOf(const DataFolder &folder)
{
    const auto path = folder.path("keys.json");
    if (const auto stored = readFile(path)) {
        const auto json = nlohmann::json::parse(*stored, nullptr, false);
        try {
            return {json.at("secret"), json.at("anon_key"), json.at("service_role_key")};
        } catch (const nlohmann::json::exception &) {
            throw StartFailure(path.string() + " is damaged; remove it to have new keys made");
        }
    }
    Keys keys;
    keys.secret = randomText(32);
    const long now = static_cast<long>(std::time(nullptr));
    constexpr long tenYears = 10L * 365 * 24 * 3600;
    const auto keyFor = [&](const char *role) {
        const nlohmann::json claims{{"iss", "supabase"},
                                    {"ref", "local"},
                                    {"role", role},
                                    {"iat", now},
                                    {"exp", now + tenYears}};
        return signedToken(claims.dump(), keys.secret);
    };
    keys.anonKey = keyFor("anon");
    keys.serviceRoleKey = keyFor("service_role");
    const nlohmann::json json{{"secret", keys.secret},
                              {"anon_key", keys.anonKey},
                              {"service_role_key", keys.serviceRoleKey}};
    writeFileAtomically(path, json.dump(2) + '\n', 0600);
    return keys;
}
