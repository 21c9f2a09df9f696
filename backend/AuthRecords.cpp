#include "backend/AuthRecords.h"

#include "platform/RecordReader.h"

using namespace Qt::StringLiterals;

namespace {

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

} // namespace

std::variant<AuthResponse, DecodingError> decodeAuthResponse(const QByteArray &body)
{
    return decodeRecord(body, u"AuthResponse"_s, readResponse);
}

std::variant<AuthErrorResponse, DecodingError> decodeAuthErrorResponse(const QByteArray &body)
{
    return decodeRecord(body, u"AuthErrorResponse"_s, readErrorResponse);
}
