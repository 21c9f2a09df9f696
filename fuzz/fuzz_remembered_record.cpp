// The remembered record: read as the slow reader reads it. Whatever two texts are remembered, they
// are read back, and the service reads them alike. The input: a record, or the two texts.

#include "fuzz/Fuzzing.h"
#include "fuzz/SlowRecords.h"
#include "service/Json.h"

#include <string_view>
#include <variant>

namespace {

void requireRoundTrip(const Credentials &credentials)
{
    const QByteArray record = encodeCredentials(credentials);
    const auto again = decodeCredentials(record);
    require(std::holds_alternative<Credentials>(again)
                && std::get<Credentials>(again) == credentials,
            "what is remembered is read back");
    const auto read = parsedJson(record.toStdString());
    require(read.is_object() && read.size() == 2
                && read.at("email") == credentials.email.toStdString()
                && read.at("password") == credentials.password.toStdString(),
            "the service reads what is sent");
}

} // namespace

void fuzz(std::string_view input)
{
    const auto decoded = decodeCredentials(bytesFrom(input));
    const auto *const credentials = std::get_if<Credentials>(&decoded);
    const auto expected = slowCredentials(slowJson(input));
    require(expected.has_value() == (credentials != nullptr), "the same bodies are records");
    if (credentials) {
        require(*credentials == *expected, "the same record is read");
        requireRoundTrip(*credentials);
    }
    const auto parts = partsOf(input, 2);
    requireRoundTrip({textFrom(parts[0]), textFrom(parts[1])});
}
