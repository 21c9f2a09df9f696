#include "account/Credentials.h"

#include "platform/JsonText.h"
#include "platform/RecordReader.h"

using namespace Qt::StringLiterals;

namespace {

Credentials readCredentials(RecordReader reader)
{
    Credentials credentials;
    credentials.email = reader.text("email");
    credentials.password = reader.text("password");
    return credentials;
}

} // namespace

std::variant<Credentials, DecodingError> decodeCredentials(const QByteArray &body)
{
    return decodeRecord(body, u"Credentials"_s, readCredentials);
}

QByteArray encodeCredentials(const Credentials &credentials)
{
    JsonObjectWriter writer;
    writer.add("email", credentials.email);
    writer.add("password", credentials.password);
    return writer.object();
}
