// A speech service, as a program of its own: a reader that waits for its voice, asked by a test
// that waits for the reader, would wait for ever if the test were the voice as well. Usage:
// stand_in_voice SOCKET. Ends when its standard input does.

#include <QCoreApplication>
#include <QHash>
#include <QLocalServer>
#include <QLocalSocket>
#include <QRegularExpression>
#include <QSocketNotifier>

#include <cstdio>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

/// Without the marks that tell a voice where words begin.
QString plain(QString text)
{
    static const QRegularExpression tag(u"<[^>]*>"_s);
    text.remove(tag);
    text.replace(u"&lt;"_s, u"<"_s).replace(u"&gt;"_s, u">"_s).replace(u"&amp;"_s, u"&"_s);
    return text.simplified();
}

/// A speech service (as Speech Dispatcher is one) that keeps silent and prints what it is to say,
/// sentence by sentence.
class StandInVoice : public QObject {
public:
    explicit StandInVoice(const QString &socket);

private:
    struct Client {
        QByteArray unread;
        QStringList sentence;
        bool isDictating = false; ///< what comes is the text to say, up to a line with a dot
    };

    void accept();
    void read(QLocalSocket *socket);
    QByteArray answerTo(Client &client, const QByteArray &line);

    QHash<QLocalSocket *, Client> m_clients;
    QLocalServer m_server; // last: its sockets report their end to the members above
};

StandInVoice::StandInVoice(const QString &socket)
{
    if (!m_server.listen(socket))
        qFatal("no place for the voice: %s", qPrintable(m_server.errorString()));
    connect(&m_server, &QLocalServer::newConnection, this, &StandInVoice::accept);
}

void StandInVoice::accept()
{
    while (QLocalSocket *socket = m_server.nextPendingConnection()) {
        connect(socket, &QLocalSocket::readyRead, this, [this, socket] { read(socket); });
        connect(socket, &QLocalSocket::disconnected, this, [this, socket] {
            m_clients.remove(socket);
            socket->deleteLater();
        });
        read(socket);
    }
}

void StandInVoice::read(QLocalSocket *socket)
{
    Client &client = m_clients[socket];
    client.unread += socket->readAll();
    for (qsizetype end = client.unread.indexOf('\n'); end >= 0; end = client.unread.indexOf('\n')) {
        const QByteArray line = client.unread.first(end).trimmed();
        client.unread.remove(0, end + 1);
        socket->write(answerTo(client, line));
    }
}

QByteArray StandInVoice::answerTo(Client &client, const QByteArray &line)
{
    if (client.isDictating) {
        if (line != ".") {
            client.sentence.append(QString::fromUtf8(line));
            return {};
        }
        client.isDictating = false;
        printf("%s\n", plain(client.sentence.join(u' ')).toUtf8().constData());
        fflush(stdout);
        client.sentence.clear();
        return "225-1\r\n225 OK MESSAGE QUEUED\r\n";
    }
    const QByteArray command = line.toUpper();
    if (command.startsWith("SPEAK")) {
        client.isDictating = true;
        return "230 OK RECEIVING DATA\r\n";
    }
    if (command.startsWith("CHAR") || command.startsWith("KEY"))
        return "225-1\r\n225 OK MESSAGE QUEUED\r\n";
    if (command.startsWith("HISTORY"))
        return "245-1\r\n245 OK CLIENT ID SENT\r\n";
    if (command.startsWith("LIST OUTPUT"))
        return "250-silence\r\n250 OK MODULE LIST SENT\r\n";
    if (command.startsWith("LIST"))
        return "249-voice\ten\tnone\r\n249 OK VOICE LIST SENT\r\n";
    if (command.startsWith("GET"))
        return "251-0\r\n251 OK GET RETURNED\r\n";
    return "208 OK\r\n";
}

} // namespace

int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    const StandInVoice voice(QCoreApplication::arguments().value(1));
    QSocketNotifier end(STDIN_FILENO, QSocketNotifier::Read);
    QObject::connect(&end, &QSocketNotifier::activated, &QCoreApplication::quit);
    puts("ready");
    fflush(stdout);
    return QCoreApplication::exec();
}
