// The process-wide client: configured by the environment, announcing to and remembering for all.

#include "account/CredentialsStore.h"
#include "backend/SupabaseClient.h"
#include "model/Event.h"
#include "model/EventCreatePayload.h"
#include "platform/NotificationCenter.h"
#include "support/Await.h"
#include "support/HttpServer.h"

#include <QCoreApplication>
#include <QNetworkReply>
#include <QSet>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

/// How long the requests that are sent while this lives may hear nothing, in milliseconds, as the
/// toolkit has been told.
class Patience : public QObject {
public:
    Patience() { qApp->installEventFilter(this); }

    const QSet<int> &told() const { return m_told; }

    bool eventFilter(QObject *watched, QEvent *) override
    {
        if (const auto *const reply = qobject_cast<QNetworkReply *>(watched))
            m_told.insert(reply->request().transferTimeout());
        return false;
    }

private:
    QSet<int> m_told;
};

} // namespace

class TestBackendFacade : public QObject {
    Q_OBJECT

    HttpServer &m_server;
    qsizetype m_before = 0;

    const HttpRequest &sent() const { return m_server.requests().at(m_before); }

public:
    explicit TestBackendFacade(HttpServer &server)
        : m_server(server)
    {
    }

private Q_SLOTS:
    void init()
    {
        SupabaseClient::signOut();
        SupabaseClient::clearSavedCredentials();
        m_server.answer(
            HttpAnswer::whole(200, "{\"access_token\":\"jeton\",\"user\":{\"id\":\"moi\"}}"));
        QCOMPARE(outcomeOf(SupabaseClient::signIn(u"a@b.fr"_s, u"p"_s)).failure(), QString());
        m_before = m_server.requests().size();
    }

    void theSessionIsTheOneOfTheProcess()
    {
        QCOMPARE(SupabaseClient::session(), (Session{u"jeton"_s, u"moi"_s, u"a@b.fr"_s}));
    }

    void theRecordIsRememberedForTheUser()
    {
        QCOMPARE(CredentialsStore::loadCredentials(), (Credentials{u"a@b.fr"_s, u"p"_s}));
        SupabaseClient::clearSavedCredentials();
        QVERIFY(!CredentialsStore::loadCredentials());
    }

    void aSignUpGoesToItsAddress()
    {
        QCOMPARE(outcomeOf(SupabaseClient::signUp(u"c@d.fr"_s, u"q"_s)).failure(), QString());
        QCOMPARE(sent().target, "/auth/v1/signup");
        QCOMPARE(CredentialsStore::loadCredentials(), (Credentials{u"c@d.fr"_s, u"q"_s}));
    }

    void everyChangeIsAnnouncedToAll()
    {
        QStringList names;
        QObject context;
        connect(&NotificationCenter::defaultCenter(), &NotificationCenter::posted, &context,
                [&names](const QString &name) { names.append(name); });
        SupabaseClient::signOut();
        SupabaseClient::clearSavedCredentials();
        QCOMPARE(outcomeOf(SupabaseClient::signIn(u"a@b.fr"_s, u"p"_s)).failure(), QString());
        QCOMPARE(names, QStringList(3, u"SupabaseAuthChanged"_s));
        QCOMPARE(SupabaseClient::authChangedNotification(), u"SupabaseAuthChanged"_s);
    }

    void everyOperationWaitsAMinute()
    {
        const Patience patience;
        EventCreatePayload payload;
        QCOMPARE(outcomeOf(SupabaseClient::signIn(u"a@b.fr"_s, u"p"_s)).failure(), QString());
        QCOMPARE(outcomeOf(SupabaseClient::createEvent(payload)).failure(), QString());
        m_server.answer(HttpAnswer::whole(200, "[]"));
        QCOMPARE(outcomeOf(SupabaseClient::fetchEvents()).failure(), QString());
        QCOMPARE(patience.told(), QSet<int>{60'000});
    }

    void eventsAreReadAndWrittenWithTheToken()
    {
        EventCreatePayload payload;
        payload.id = u"7"_s;
        payload.titre = u"Bal"_s;
        m_server.answer(HttpAnswer::whole(200, "[]"));
        QCOMPARE(outcomeOf(SupabaseClient::fetchEvents()).failure(), QString());
        QCOMPARE(outcomeOf(SupabaseClient::createEvent(payload)).failure(), QString());
        QCOMPARE(outcomeOf(SupabaseClient::updateEvent(u"7"_s, payload)).failure(), QString());
        QCOMPARE(outcomeOf(SupabaseClient::deleteEvent(u"7"_s)).failure(), QString());
        QList<QByteArray> methods;
        for (qsizetype i = m_before; i < m_server.requests().size(); ++i) {
            const HttpRequest &request = m_server.requests().at(i);
            methods.append(request.method);
            QCOMPARE(request.header("apikey"), "clef");
            QCOMPARE(request.header("Authorization"), "Bearer jeton");
        }
        QCOMPARE(methods, (QList<QByteArray>{"GET", "POST", "PATCH", "DELETE"}));
    }
};

int main(int argc, char **argv)
{
    QCoreApplication application(argc, argv);
    const QTemporaryDir folder;
    const SupabaseClient::Lifetime client(folder.filePath(u"reply.json"_s));
    HttpServer server;
    qputenv("XDG_CONFIG_HOME", QFile::encodeName(folder.path()));
    qputenv("SUPABASE_URL", server.base().toUtf8());
    qputenv("SUPABASE_KEY", " clef\n");
    TestBackendFacade test(server);
    const int result = QTest::qExec(&test, argc, argv);
    server.hangUp();
    return result;
}

#include "test_backend_facade.moc"
