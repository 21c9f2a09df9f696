// What members' operations and sign-ins are made of, and what stops them before they are sent.

#include "backend/AuthRequests.h"
#include "backend/EventRequests.h"
#include "backend/SupabaseError.h"
#include "support/RequestParts.h"
#include "support/Vectors.h"

#include <QJsonDocument>
#include <QTest>

#include <functional>
#include <optional>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

using Headers = QList<std::pair<QByteArray, QByteArray>>;

} // namespace

class TestBackendMemberRequests : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void aRowHasItsAddress_data()
    {
        QTest::addColumn<bool>("isDeleted");
        QTest::newRow("changed") << false;
        QTest::newRow("deleted") << true;
    }

    void aRowHasItsAddress()
    {
        QFETCH(bool, isDeleted);
        const auto ask = [isDeleted](const QJsonObject &record) -> Vectors::Answer {
            const Configuration configuration{u"https://x.supabase.co"_s, u"k"_s};
            const QString id = record[u"id"_s].toString();
            QJsonValue given = QJsonValue::Null;
            try {
                const Request request = isDeleted
                    ? deleteEventRequest(configuration, member(), id)
                    : updateEventRequest(configuration, member(), id, {});
                given = QString::fromLatin1(request.address.toEncoded());
            } catch (const SupabaseError &error) {
                if (error != SupabaseError::invalidURL(u"https://x.supabase.co"_s))
                    given = error.errorDescription();
            }
            return {record[u"address"_s], given};
        };
        QVERIFY(Vectors::check(u"row-addresses.json"_s,
                               {{u"id"_s}, {u"address"_s, Vectors::Text | Vectors::Null}}, ask));
    }

    void whatMembersMaySendIsBuiltAsTold()
    {
        const Configuration configuration{u"https://x.fr"_s, u"clef"_s};
        const Headers writing{{"apikey", "clef"},
                              {"Authorization", "Bearer jeton"},
                              {"Content-Type", "application/json"},
                              {"Accept", "application/json"},
                              {"Prefer", "return=representation"}};
        EventCreatePayload payload;
        payload.id = u"7"_s;
        payload.titre = u"Fête \"d'été\""_s;

        const Request create = createEventRequest(configuration, member(), payload);
        QCOMPARE(
            create,
            (Request{"POST", QUrl(u"https://x.fr/rest/v1/events"_s), writing, payload.toJson()}));
        const Request update = updateEventRequest(configuration, member(), u"7"_s, payload);
        QCOMPARE(update,
                 (Request{"PATCH", QUrl(u"https://x.fr/rest/v1/events?id=eq.7"_s), writing,
                          payload.toJson()}));
        const Request remove = deleteEventRequest(configuration, member(), u"7"_s);
        QCOMPARE(remove,
                 (Request{"DELETE",
                          QUrl(u"https://x.fr/rest/v1/events?id=eq.7"_s),
                          {{"apikey", "clef"},
                           {"Authorization", "Bearer jeton"},
                           {"Accept", "application/json"}},
                          {}}));
    }

    void whoIsSignedOutReadsThatBeforeAllElse()
    {
        const auto signedOutError = SupabaseError::authError(u"Vous devez être connecté."_s);
        for (const Configuration &configuration :
             {Configuration{}, Configuration{u"https://x y"_s, u"k"_s},
              Configuration{u"https://x.fr"_s, u"k"_s}}) {
            QCOMPARE(errorOf([&] { createEventRequest(configuration, {}, {}); }), signedOutError);
            QCOMPARE(errorOf([&] { updateEventRequest(configuration, {}, u"é"_s, {}); }),
                     signedOutError);
            QCOMPARE(errorOf([&] { deleteEventRequest(configuration, {}, u"é"_s); }),
                     signedOutError);
        }
    }

    void aMissingConfigurationComesBeforeABrokenAddress()
    {
        const Configuration incomplete{u"https://x y"_s, {}};
        const auto missing = SupabaseError::missingConfig();
        QCOMPARE(errorOf([&] { createEventRequest(incomplete, member(), {}); }), missing);
        QCOMPARE(errorOf([&] { updateEventRequest(incomplete, member(), u"1"_s, {}); }), missing);
        QCOMPARE(errorOf([&] { deleteEventRequest(incomplete, member(), u"1"_s); }), missing);
        QCOMPARE(errorOf([&] { signInRequest(incomplete, {}); }), missing);
        QCOMPARE(errorOf([&] { signUpRequest(incomplete, {}); }), missing);
    }

    void aBrokenBaseIsNamedByEveryOperation()
    {
        const Configuration broken{u"https://x y"_s, u"k"_s};
        const auto invalid = SupabaseError::invalidURL(u"https://x y"_s);
        QCOMPARE(errorOf([&] { createEventRequest(broken, member(), {}); }), invalid);
        QCOMPARE(errorOf([&] { updateEventRequest(broken, member(), u"1"_s, {}); }), invalid);
        QCOMPARE(errorOf([&] { deleteEventRequest(broken, member(), u"1"_s); }), invalid);
        QCOMPARE(errorOf([&] { signInRequest(broken, {}); }), invalid);
        QCOMPARE(errorOf([&] { signUpRequest(broken, {}); }), invalid);
    }

    void whatSignsInIsSentAsTyped()
    {
        const Configuration configuration{u"https://x.fr"_s, u"clef"_s};
        const Credentials typed{u" É@x.fr "_s, u"a\"b\\c\nd"_s};
        const Headers headers{{"apikey", "clef"},
                              {"Content-Type", "application/json"},
                              {"Accept", "application/json"}};
        const Request signIn = signInRequest(configuration, typed);
        const Request signUp = signUpRequest(configuration, typed);
        QCOMPARE(signIn.verb, "POST");
        QCOMPARE(signIn.address, QUrl(u"https://x.fr/auth/v1/token?grant_type=password"_s));
        QCOMPARE(signIn.headers, headers);
        QCOMPARE(signUp.verb, "POST");
        QCOMPARE(signUp.address, QUrl(u"https://x.fr/auth/v1/signup"_s));
        QCOMPARE(signUp.headers, headers);
        QCOMPARE(signUp.body, signIn.body);
        const QJsonObject sent{{u"email"_s, typed.email}, {u"password"_s, typed.password}};
        QCOMPARE(QJsonDocument::fromJson(signIn.body).object(), sent);
    }
};

QTEST_GUILESS_MAIN(TestBackendMemberRequests)
#include "test_backend_member_requests.moc"
