#include "service/Keys.h"

#include "service/Files.h"
#include "service/Json.h"
#include "service/StartFailure.h"

#include <nlohmann/json.hpp>
#include <sys/random.h>

#include <cstddef>
#include <filesystem>
#include <string_view>

namespace {

std::string randomBytes(std::size_t count)
{
    std::string bytes(count, '\0');
    if (getrandom(bytes.data(), bytes.size(), 0) != static_cast<ssize_t>(bytes.size()))
        throw StartFailure("the system gives no random bytes");
    return bytes;
}

/// As a hosted project's keys look: what it is for, 22 random letters and 8 more.
std::string keyFor(const std::string &purpose)
{
    constexpr std::string_view letters =
        "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789-_";
    std::string key = "sb_" + purpose + '_';
    int written = 0;
    for (const char byte : randomBytes(30)) {
        if (written++ == 22)
            key += '_';
        key += letters[static_cast<unsigned char>(byte) % letters.size()];
    }
    return key;
}

Keys made(const std::filesystem::path &path, const std::string &tokenSecret)
{
    const Keys keys{tokenSecret, keyFor("publishable"), keyFor("secret")};
    const nlohmann::json json{{"token_secret", keys.tokenSecret},
                              {"publishable_key", keys.publishable},
                              {"secret_key", keys.secret}};
    writeFileAtomically(path, json.dump(2) + '\n', 0600);
    return keys;
}

} // namespace

std::string randomText(std::size_t count)
{
    constexpr char digits[] = "0123456789abcdef";
    std::string text;
    for (const char byte : randomBytes(count)) {
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
        const auto json = parsedJson(*stored);
        // A folder of an earlier version has keys of another kind; the sessions of its accounts go
        // on.
        const bool isEarlier =
            json.is_object() && json.contains("secret") && !json.contains("token_secret");
        try {
            if (!isEarlier)
                return {json.at("token_secret"), json.at("publishable_key"), json.at("secret_key")};
            return made(path, json.at("secret"));
        } catch (const nlohmann::json::exception &) {
            throw StartFailure(path.string() + " is damaged; remove it to have new keys made");
        }
    }
    return made(path, randomText(32));
}
