// What the person reads when something failed.

#include "backend/DecodeFailure.h"
#include "backend/Reply.h"
#include "backend/SupabaseError.h"
#include "backend/TransportFailure.h"

#include <QMetaEnum>
#include <QTest>

#include <optional>

using namespace Qt::StringLiterals;

class TestBackendErrors : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void eachErrorHasItsText_data()
    {
        QTest::addColumn<SupabaseError>("error");
        QTest::addColumn<QString>("text");

        QTest::newRow("invalidURL") << SupabaseError::invalidURL(u"https://x\"y"_s)
                                    << u"Supabase URL is invalid: https://x\"y"_s;
        QTest::newRow("httpError") << SupabaseError::httpError(404, "{\"code\":\"PGRST\"}")
                                   << u"HTTP 404: {\"code\":\"PGRST\"}"_s;
        QTest::newRow("httpError, letters")
            << SupabaseError::httpError(409, "d\xC3\xA9j\xC3\xA0\n") << u"HTTP 409: déjà\n"_s;
        QTest::newRow("httpError, no body") << SupabaseError::httpError(404, {}) << u"HTTP 404"_s;
        QTest::newRow("httpError, not UTF-8")
            << SupabaseError::httpError(500, "d\xE9j\xE0") << u"HTTP 500"_s;
        QTest::newRow("decodingFailed")
            << SupabaseError::decodingFailed(u"Decode error: x"_s) << u"Decode error: x"_s;
        QTest::newRow("authError") << SupabaseError::authError(u"Vous devez être connecté."_s)
                                   << u"Vous devez être connecté."_s;
        QTest::newRow("missingConfig")
            << SupabaseError::missingConfig() << u"Missing SUPABASE_URL or SUPABASE_KEY."_s;
        QTest::newRow("invalidResponse")
            << SupabaseError::invalidResponse() << u"Invalid response from server."_s;
    }

    void eachErrorHasItsText()
    {
        QFETCH(SupabaseError, error);
        QFETCH(QString, text);
        QCOMPARE(error.errorDescription(), text);
        const LocalizedError &asShown = error;
        QCOMPARE(asShown.localizedDescription(), text);
    }

    void onlyStatuses200To299Succeed()
    {
        for (int status = 100; status < 700; ++status) {
            std::optional<SupabaseError> error;
            QByteArray body;
            try {
                body = judged(status, "told");
            } catch (const SupabaseError &thrown) {
                error = thrown;
            }
            if (status >= 200 && status <= 299) {
                QVERIFY(!error);
                QCOMPARE(body, "told");
            } else {
                QCOMPARE(error, SupabaseError::httpError(status, "told"));
            }
        }
    }

    void aReplyWithoutAStatusIsInvalid()
    {
        try {
            judged(std::nullopt, "[]");
        } catch (const SupabaseError &error) {
            QCOMPARE(error, SupabaseError::invalidResponse());
            return;
        }
        QFAIL("taken for a success");
    }

    void aPreviewHasAtMost400Characters_data()
    {
        QTest::addColumn<QByteArray>("body");
        QTest::addColumn<QString>("preview");

        const QString family = u"👨\u200d👩\u200d👧"_s;
        const QString accented = u"e\u0301"_s;
        QTest::newRow("empty") << QByteArray() << QString();
        QTest::newRow("whole") << QByteArray("{\"a\": \"é\"}") << u"{\"a\": \"é\"}"_s;
        QTest::newRow("not UTF-8") << QByteArray("[\xE9]") << u"<non-utf8 body>"_s;
        for (const QString &character : {u"x"_s, u"é"_s, accented, family, u"\r\n"_s}) {
            for (const int count : {399, 400, 401, 1000}) {
                const QString text = character.repeated(count);
                QTest::addRow("%d of %d code units", count, int(character.size()))
                    << text.toUtf8()
                    << (count > 400 ? character.repeated(400) + QChar(0x2026) : text);
            }
        }
    }

    void aPreviewHasAtMost400Characters()
    {
        QFETCH(QByteArray, body);
        QFETCH(QString, preview);
        QCOMPARE(decodeFailureMessage({u"events[0].id: missing"_s}, body),
                 u"Decode error: events[0].id: missing. Body preview: "_s + preview
                     + u". Saved response to /tmp/events-response.json"_s);
    }

    void theManagersErrorsAreReadRight_data()
    {
        QTest::addColumn<QNetworkReply::NetworkError>("error");
        QTest::addColumn<int>("status");
        QTest::addColumn<bool>("isFailure");

        using Told = QNetworkReply;
        QTest::newRow("success") << Told::NoError << 200 << false;
        QTest::newRow("not HTTP, but no error") << Told::NoError << 0 << false;
        QTest::newRow("400") << Told::ProtocolInvalidOperationError << 400 << false;
        QTest::newRow("401") << Told::AuthenticationRequiredError << 401 << false;
        QTest::newRow("404") << Told::ContentNotFoundError << 404 << false;
        QTest::newRow("407") << Told::ProxyAuthenticationRequiredError << 407 << false;
        QTest::newRow("422") << Told::UnknownContentError << 422 << false;
        QTest::newRow("500") << Told::InternalServerError << 500 << false;
        QTest::newRow("599") << Told::UnknownServerError << 599 << false;
        QTest::newRow("308 to a write") << Told::ContentReSendError << 308 << false;
        QTest::newRow("a body cut") << Told::RemoteHostClosedError << 200 << true;
        QTest::newRow("an error's body cut") << Told::RemoteHostClosedError << 404 << true;
        QTest::newRow("a write not sent again") << Told::ContentReSendError << 0 << true;
        QTest::newRow("silence in a body") << Told::OperationCanceledError << 200 << true;
        QTest::newRow("a broken body") << Told::ProtocolFailure << 200 << true;
        QTest::newRow("a broken redirect") << Told::ProtocolUnknownError << 302 << true;
        QTest::newRow("a proxy's refusal") << Told::ProxyAuthenticationRequiredError << 0 << true;
    }

    void theManagersErrorsAreReadRight()
    {
        QFETCH(QNetworkReply::NetworkError, error);
        QFETCH(int, status);
        QFETCH(bool, isFailure);
        Received received;
        received.error = error;
        if (status != 0)
            received.status = status;
        QCOMPARE(transportFailure(received, QUrl(u"https://x.fr"_s), {}).has_value(), isFailure);
    }

    void aBodyShorterThanAnnouncedIsNoReply_data()
    {
        QTest::addColumn<int>("status");
        QTest::addColumn<int>("announced");
        QTest::addColumn<bool>("isFailure");
        QTest::newRow("as announced") << 404 << 2 << false;
        QTest::newRow("more") << 404 << 1 << false;
        QTest::newRow("less") << 404 << 3 << true;
        QTest::newRow("less, in a success") << 200 << 3 << true;
        QTest::newRow("where none is expected") << 304 << 3 << false;
    }

    void aBodyShorterThanAnnouncedIsNoReply()
    {
        QFETCH(int, status);
        QFETCH(int, announced);
        QFETCH(bool, isFailure);
        Received received;
        received.status = status;
        received.body = "{}";
        received.announced = announced;
        QCOMPARE(transportFailure(received, QUrl(u"https://x.fr"_s), {}).has_value(), isFailure);
    }

    void everyFailureOfTheTransportHasWordsOfItsOwn()
    {
        const auto errors = QMetaEnum::fromType<QNetworkReply::NetworkError>();
        for (int i = 0; i < errors.keyCount(); ++i) {
            Received received;
            received.error = static_cast<QNetworkReply::NetworkError>(errors.value(i));
            const auto failure = transportFailure(received, QUrl(u"https://x.fr"_s), {});
            if (received.error == QNetworkReply::NoError) {
                QVERIFY(!failure);
                continue;
            }
            QVERIFY2(failure, errors.key(i));
            const QString text = failure->localizedDescription();
            QVERIFY2(text.endsWith(u'.') && !text.contains(u'\n') && !text.contains(u'%'),
                     qPrintable(text));
        }
    }
};

QTEST_GUILESS_MAIN(TestBackendErrors)
#include "test_backend_errors.moc"
