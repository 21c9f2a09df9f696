#include "account/Credentials.h"
#include "backend/AuthRecords.h"
#include "backend/JwtSubject.h"
#include "support/Vectors.h"

#include <QJsonDocument>
#include <QSet>
#include <QTest>

#include <optional>
#include <variant>

using namespace Qt::StringLiterals;

namespace {

void put(QJsonObject &record, const QString &key, const std::optional<QString> &value)
{
    if (value)
        record[key] = *value;
}

QJsonObject json(const AuthResponse &response)
{
    QJsonObject record;
    put(record, u"access_token"_s, response.access_token);
    if (response.user) {
        QJsonObject user{{u"id"_s, response.user->id}};
        put(user, u"email"_s, response.user->email);
        record[u"user"_s] = user;
    }
    return record;
}

QJsonObject json(const AuthErrorResponse &response)
{
    QJsonObject record;
    put(record, u"error"_s, response.error);
    put(record, u"error_description"_s, response.errorDescription);
    return record;
}

QJsonObject json(const Credentials &credentials)
{
    return {{u"email"_s, credentials.email}, {u"password"_s, credentials.password}};
}

template <typename Record>
QJsonValue answer(const std::variant<Record, DecodingError> &decoded)
{
    const auto *const record = std::get_if<Record>(&decoded);
    return record ? QJsonValue(json(*record)) : QJsonValue(u"fails"_s);
}

QJsonValue answer(const QString &record, const QByteArray &body)
{
    if (record == u"AuthResponse")
        return answer(decodeAuthResponse(body));
    if (record == u"AuthErrorResponse")
        return answer(decodeAuthErrorResponse(body));
    if (record == u"Credentials")
        return answer(decodeCredentials(body));
    return u"no such record"_s;
}

} // namespace

class TestAuthRecords : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void recordsAreReadAsTheOtherClientsReadThem();
    void theFaultSaysWhereAndWhy_data();
    void theFaultSaysWhereAndWhy();
    void theAccountIsReadFromTheToken();
    void aTokenMayUseEveryLetterOfItsAlphabet();
};

void TestAuthRecords::recordsAreReadAsTheOtherClientsReadThem()
{
    QVERIFY(Vectors::check(u"accounts.json"_s,
                           {{u"body"_s},
                            {u"record"_s},
                            {u"value"_s, Vectors::Record | Vectors::Absent},
                            {u"fails"_s, Vectors::Flag | Vectors::Absent}},
                           [](const auto &asked) {
                               const QByteArray body =
                                   QByteArray::fromBase64(asked[u"body"].toString().toLatin1());
                               return Vectors::Answer{asked[u"fails"].toBool()
                                                          ? QJsonValue(u"fails"_s)
                                                          : asked[u"value"],
                                                      answer(asked[u"record"].toString(), body)};
                           }));
}

void TestAuthRecords::theFaultSaysWhereAndWhy_data()
{
    QTest::addColumn<QByteArray>("body");
    QTest::addColumn<QString>("fault");
    QTest::newRow("a list") << QByteArray("[]")
                            << u"AuthResponse: expected an object but found an array"_s;
    QTest::newRow("a number for the token")
        << QByteArray(R"({"access_token":1})")
        << u"AuthResponse.access_token: expected a string but found a number"_s;
    QTest::newRow("a user without an id")
        << QByteArray(R"({"user":{"email":1}})")
        << u"AuthResponse.user.id: expected a string but the key is missing"_s;
    QTest::newRow("a user that is a text")
        << QByteArray(R"({"user":"u"})")
        << u"AuthResponse.user: expected an object but found a string"_s;
}

void TestAuthRecords::theFaultSaysWhereAndWhy()
{
    QFETCH(QByteArray, body);
    const auto decoded = decodeAuthResponse(body);
    QVERIFY(std::holds_alternative<DecodingError>(decoded));
    QTEST(std::get<DecodingError>(decoded).description, "fault");
}

void TestAuthRecords::theAccountIsReadFromTheToken()
{
    QVERIFY(Vectors::check(
        u"tokens.json"_s, {{u"token"_s}, {u"subject"_s, Vectors::Text | Vectors::Null}},
        [](const auto &asked) {
            const auto subject = jwtSubject(asked[u"token"].toString());
            return Vectors::Answer{asked[u"subject"],
                                   subject ? QJsonValue(*subject) : QJsonValue(QJsonValue::Null)};
        }));
}

// As tokens are written and as Base64 is: with "-" and "_", and with "+" and "/" and filled up.
void TestAuthRecords::aTokenMayUseEveryLetterOfItsAlphabet()
{
    QString text;
    for (char letter = ' '; letter <= '~'; ++letter)
        text += QLatin1Char(letter);
    QSet<char> used;
    for (int shift = 0; shift < 3; ++shift) {
        const QString subject = QString(shift, u' ') + text;
        const QByteArray claims =
            QJsonDocument(QJsonObject{{u"sub"_s, subject}}).toJson(QJsonDocument::Compact);
        for (const auto form : {QByteArray::Base64UrlEncoding | QByteArray::OmitTrailingEquals,
                                QByteArray::Base64Encoding | QByteArray::KeepTrailingEquals}) {
            const QByteArray written = claims.toBase64(form);
            used.unite(QSet<char>(written.begin(), written.end()));
            QCOMPARE(jwtSubject(u"head."_s + QString::fromLatin1(written) + u".signature"_s),
                     subject);
        }
    }
    QCOMPARE(used.size(), 64 + 2 + 1);
}

QTEST_GUILESS_MAIN(TestAuthRecords)
#include "test_auth_records.moc"
