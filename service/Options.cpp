#include "service/Options.h"

#include "service/StartFailure.h"

#include <charconv>

const char usageText[] =
    R"(usage: amorvelle-service --data FOLDER [option...]

  --data FOLDER          where the database and the keys are kept; made when missing
  --supabase FOLDER      where migrations/ and seed.sql are
  --port N               port on 127.0.0.1; 0, the default, takes a free one
  --ready-file FILE      written once requests are answered: SUPABASE_URL=... and SUPABASE_KEY=...
  --max-rows N           most rows in one reply (1000)
  --token-seconds N      how long an access token is valid (3600)
  --confirm-email        a new account has to confirm its address before it can sign in
  --mail-pause N         seconds between two mails of a kind to an address (60)
  --auth-errors SHAPE    current or older: how sign-in errors are written
  --rate-limit N         sign-ins and sign-ups allowed in five minutes (0: no limit)
  --renew-seed           lays sample events that nobody has changed around today once more
  --seed-password TEXT   gives this password to the accounts of a seed that is being loaded
)";

namespace {

int numberFrom(const std::string &name, const std::string &text, int smallest, int largest)
{
    int number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (error != std::errc() || end != text.data() + text.size() || number < smallest
        || number > largest) {
        throw StartFailure(name + " takes a number from " + std::to_string(smallest) + " to "
                           + std::to_string(largest));
    }
    return number;
}

} // namespace

Options optionsFrom(int count, char **arguments)
{
    constexpr int unbounded = 1'000'000'000;
    Options options;
    for (int at = 1; at < count; ++at) {
        const std::string name = arguments[at];
        if (name == "--confirm-email") {
            options.confirmEmail = true;
            continue;
        }
        if (name == "--renew-seed") {
            options.renewsSeed = true;
            continue;
        }
        if (at + 1 == count)
            throw StartFailure(name + " is not understood, or lacks its value");
        const std::string value = arguments[++at];
        if (name == "--data")
            options.data = std::filesystem::absolute(value);
        else if (name == "--supabase")
            options.supabase = std::filesystem::absolute(value);
        else if (name == "--port")
            options.port = numberFrom(name, value, 0, 65535);
        else if (name == "--ready-file")
            options.readyFile = std::filesystem::absolute(value);
        else if (name == "--max-rows")
            options.maxRows = numberFrom(name, value, 1, unbounded);
        else if (name == "--token-seconds")
            options.tokenSeconds = numberFrom(name, value, 1, unbounded);
        else if (name == "--mail-pause")
            options.mailPause = numberFrom(name, value, 0, unbounded);
        else if (name == "--auth-errors" && (value == "current" || value == "older"))
            options.authErrors = value == "older" ? AuthErrorShape::Older : AuthErrorShape::Current;
        else if (name == "--rate-limit")
            options.rateLimit = numberFrom(name, value, 0, unbounded);
        else if (name == "--seed-password")
            options.seedPassword = value;
        else
            throw StartFailure(name + " " + value + " is not understood");
    }
    if (options.data.empty())
        throw StartFailure("--data FOLDER is missing");
    return options;
}
