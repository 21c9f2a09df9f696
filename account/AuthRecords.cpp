#include "account/AuthRecords.h"

#include "account/RecordReader.h"
#include "platform/WholeJson.h"

using namespace Qt::StringLiterals;

namespace {

template <typename Record>
std::variant<Record, DecodingError> decode(const QByteArray &body, const QString &name,
                                           Record (*read)(RecordReader))
{
    simdjson::dom::parser parser;
    simdjson::dom::element root;
    if (const auto error = parseWhole(parser, body, root)) {
        return DecodingError{name + u": not valid JSON: "_s
                             + QString::fromUtf8(simdjson::error_message(error))};
    }
    std::optional<DecodingError> fault;
    Record record = read(RecordReader(root, name, fault));
    if (fault)
        return *fault;
    return record;
}

AuthUser readUser(RecordReader reader)
{
    AuthUser user;
    user.id = reader.text("id");
    user.email = reader.optionalText("email");
    return user;
}

AuthResponse readResponse(RecordReader reader)
{
    AuthResponse response;
    response.access_token = reader.optionalText("access_token");
    if (const auto user = reader.optionalRecord("user"))
        response.user = readUser(*user);
    return response;
}

AuthErrorResponse readErrorResponse(RecordReader reader)
{
    AuthErrorResponse response;
    response.error = reader.optionalText("error");
    response.errorDescription = reader.optionalText("error_description");
    return response;
}

Credentials readCredentials(RecordReader reader)
{
    Credentials credentials;
    credentials.email = reader.text("email");
    credentials.password = reader.text("password");
    return credentials;
}

} // namespace

std::variant<AuthResponse, DecodingError> decodeAuthResponse(const QByteArray &body)
{
    return decode(body, u"AuthResponse"_s, readResponse);
}

std::variant<AuthErrorResponse, DecodingError> decodeAuthErrorResponse(const QByteArray &body)
{
    return decode(body, u"AuthErrorResponse"_s, readErrorResponse);
}

std::variant<Credentials, DecodingError> decodeCredentials(const QByteArray &body)
{
    return decode(body, u"Credentials"_s, readCredentials);
}
