// What goes over TLS, and to whom.

#include "backend/TransportError.h"
#include "support/Await.h"
#include "support/LocalBackend.h"
#include "support/TestCertificates.h"
#include "support/TlsServer.h"

#include <QSslCertificate>
#include <QSslConfiguration>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTest>

using namespace Qt::StringLiterals;

class TestBackendTls : public QObject {
    Q_OBJECT

    const QSslConfiguration m_usual = QSslConfiguration::defaultConfiguration();

    static void trustTheAuthority()
    {
        QSslConfiguration trusting = QSslConfiguration::defaultConfiguration();
        trusting.addCaCertificate(QSslCertificate(TestCertificates::authority));
        QSslConfiguration::setDefaultConfiguration(trusting);
    }

private Q_SLOTS:
    void cleanup() { QSslConfiguration::setDefaultConfiguration(m_usual); }

    void aServiceThatCannotBeTrustedGetsNothing_data()
    {
        QTest::addColumn<QByteArray>("certificate");
        QTest::addColumn<bool>("isAuthorityTrusted");
        QTest::newRow("nobody vouches for it") << QByteArray(TestCertificates::rightful) << false;
        QTest::newRow("of another host") << QByteArray(TestCertificates::ofAnother) << true;
        QTest::newRow("expired") << QByteArray(TestCertificates::expired) << true;
    }

    void aServiceThatCannotBeTrustedGetsNothing()
    {
        QFETCH(QByteArray, certificate);
        QFETCH(bool, isAuthorityTrusted);
        if (isAuthorityTrusted)
            trustTheAuthority();
        TlsServer server(certificate);
        LocalBackend backend({server.base(), u"clef"_s});
        for (const QString &failure : {outcomeOf(backend.fetchEvents()).failure(),
                                       outcomeOf(backend.signIn(u"a@b.fr"_s, u"p"_s)).failure()})
            QCOMPARE(
                failure,
                u"The secure connection failed: the certificate of \"localhost\" was refused."_s);
        QCOMPARE(server.received(), QByteArray());
    }

    void aPortThatDoesNotSpeakTlsIsAFailureOfTheTransport_data()
    {
        QTest::addColumn<QByteArray>("greeting");
        QTest::addColumn<QString>("text");
        QTest::newRow("ends at once")
            << QByteArray() << u"The connection was lost before the reply was complete."_s;
        QTest::newRow("speaks HTTP")
            << "HTTP/1.1 400 Bad\r\nContent-Length: 0\r\n\r\n"_ba
            << u"The secure connection failed: \"127.0.0.1\" does not speak TLS as it should."_s;
    }

    void aPortThatDoesNotSpeakTlsIsAFailureOfTheTransport()
    {
        QFETCH(QByteArray, greeting);
        QFETCH(QString, text);
        QTcpServer server;
        int connections = 0;
        connect(&server, &QTcpServer::newConnection, this, [&] {
            ++connections;
            QTcpSocket *const socket = server.nextPendingConnection();
            socket->write(greeting);
            socket->disconnectFromHost();
        });
        QVERIFY(server.listen(QHostAddress::LocalHost));
        LocalBackend backend({u"https://127.0.0.1:%1"_s.arg(server.serverPort()), u"clef"_s});
        const auto outcome = outcomeOf(backend.fetchEvents());
        QVERIFY(outcome.errorAs<TransportError>() != nullptr);
        QCOMPARE(outcome.failure(), text);
        QCOMPARE(connections, 1);
    }

    void aTrustedServiceIsSpokenToInHttp11()
    {
        trustTheAuthority();
        TlsServer server(TestCertificates::rightful);
        LocalBackend backend({server.base(), u"clef"_s});
        QCOMPARE(outcomeOf(backend.fetchEvents()).failure(), QString());
        QVERIFY(server.received().startsWith("GET /rest/v1/events?select="));
        QVERIFY(server.received().contains(" HTTP/1.1\r\n"));
        // The toolkit chooses how it spells a header's name.
        QVERIFY(server.received().toLower().contains("\r\nauthorization: bearer clef\r\n"));
    }
};

QTEST_GUILESS_MAIN(TestBackendTls)
#include "test_backend_tls.moc"
