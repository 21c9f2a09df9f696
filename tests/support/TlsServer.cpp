#include "support/TlsServer.h"

#include "support/TestCertificates.h"

#include <QSslCertificate>
#include <QSslConfiguration>
#include <QSslKey>
#include <QSslSocket>

using namespace Qt::StringLiterals;

TlsServer::TlsServer(const QByteArray &certificate)
{
    QSslConfiguration configuration = QSslConfiguration::defaultConfiguration();
    configuration.setLocalCertificate(QSslCertificate(certificate));
    configuration.setPrivateKey(QSslKey(TestCertificates::key, QSsl::Ec));
    configuration.setAllowedNextProtocols(
        {QSslConfiguration::ALPNProtocolHTTP2, QSslConfiguration::NextProtocolHttp1_1});
    m_server.setSslConfiguration(configuration);
    QObject::connect(&m_server, &QSslServer::pendingConnectionAvailable, &m_server, [this] {
        auto *const socket = m_server.nextPendingConnection();
        const auto read = [this, socket] {
            const QByteArray came = socket->readAll();
            m_received += came;
            if (!came.isEmpty() && m_received.endsWith("\r\n\r\n"))
                socket->write(m_answer);
        };
        QObject::connect(socket, &QTcpSocket::readyRead, socket, read);
        QObject::connect(socket, &QTcpSocket::disconnected, socket, &QObject::deleteLater);
        read();
    });
    if (!m_server.listen(QHostAddress::LocalHost))
        qFatal("no free port on the loopback interface");
}

QString TlsServer::base() const
{
    return u"https://localhost:%1"_s.arg(m_server.serverPort());
}
