// amorvelle-check, as a program, against the local service with one fault at a time.

#include "check/PublicKey.h"
#include "support/HttpServer.h"
#include "support/LocalService.h"
#include "support/TestCertificates.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTcpServer>
#include <QTest>

#include <memory>

using namespace Qt::StringLiterals;

namespace {

struct Outcome {
    int exitCode = -1;
    QString output;
};

/// Runs a program to its end while the event loop turns, so that servers of this test may answer
/// it.
Outcome run(const QString &program, const QStringList &arguments,
            const QProcessEnvironment &environment = QProcessEnvironment::systemEnvironment())
{
    QProcess process;
    auto complete = environment;
    complete.insert(u"LC_ALL"_s, u"C.UTF-8"_s); // of one not installed newer toolkits warn
    process.setProcessEnvironment(complete);
    process.setProcessChannelMode(QProcess::MergedChannels);
    process.start(program, arguments);
    if (!QTest::qWaitFor([&] { return process.state() == QProcess::NotRunning; }, 60'000))
        process.kill();
    process.waitForFinished();
    return {process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1,
            QString::fromUtf8(process.readAll())};
}

Outcome check(const QString &address, const QString &key)
{
    return run(QStringLiteral(AMORVELLE_CHECK_PROGRAM), {address, key});
}

quint16 freePort()
{
    QTcpServer server;
    return server.listen(QHostAddress::LocalHost) ? server.serverPort() : quint16{0};
}

/// Checks a project whose server shows this certificate.
Outcome checkBehind(const QString &certificate, const QString &key)
{
    const QString port = QString::number(freePort());
    QProcess server;
    server.setProcessChannelMode(QProcess::MergedChannels);
    server.start(u"openssl"_s,
                 {u"s_server"_s, u"-accept"_s, u"127.0.0.1:"_s + port, u"-cert"_s, certificate,
                  u"-key"_s, key});
    QByteArray said;
    const auto isReady = [&] { return (said += server.readAll()).contains("ACCEPT"); };
    if (!QTest::qWaitFor(isReady, 20'000))
        qWarning("the server does not start: %s", said.constData());
    const Outcome outcome = check(u"https://localhost:"_s + port, u"clef"_s);
    server.kill();
    server.waitForFinished();
    return outcome;
}

QStringList faults(const Outcome &outcome)
{
    return outcome.output.split(u'\n').filter(u"FAUTE"_s);
}

/// A port that nobody listens on.
} // namespace

class TestProjectCheck : public QObject {
    Q_OBJECT

private:
    std::unique_ptr<LocalService> m_service;

    bool alter(const QString &sql) const
    {
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(u"PGHOST"_s, m_service->socketFolder());
        environment.insert(u"PGUSER"_s, u"postgres"_s);
        environment.insert(u"PGDATABASE"_s, u"postgres"_s);
        const Outcome outcome =
            run(u"psql"_s, {u"-q"_s, u"-v"_s, u"ON_ERROR_STOP=1"_s, u"-c"_s, sql}, environment);
        if (outcome.exitCode != 0)
            qWarning().noquote() << outcome.output;
        return outcome.exitCode == 0;
    }
    Outcome checkService() const { return check(m_service->url(), m_service->key()); }

private Q_SLOTS:
    void initTestCase()
    {
        m_service = std::make_unique<LocalService>();
        QVERIFY(m_service->isRunning());
    }

    void aProjectThatStandsIsToldSo()
    {
        const Outcome outcome = checkService();
        QCOMPARE(faults(outcome), QStringList());
        QCOMPARE(outcome.exitCode, 0);
        QVERIFY2(outcome.output.contains(u"Toutes les lignes arrivent : "),
                 qPrintable(outcome.output));
        QVERIFY(outcome.output.contains(u"L'inscription est ouverte."));
        QVERIFY(outcome.output.contains(u"s'accorde avec celle du serveur"));
    }

    void whatTheDatabaseLacksIsNamed_data()
    {
        QTest::addColumn<QString>("fault");
        QTest::addColumn<QString>("mend");
        QTest::addColumn<QString>("told");
        QTest::newRow("no table") << u"alter table public.events rename to evenements"_s
                                  << u"alter table public.evenements rename to events"_s
                                  << u"La table « events » n'existe pas"_s;
        QTest::newRow("a column missing")
            << u"alter table public.events rename column lieu to endroit"_s
            << u"alter table public.events rename column endroit to lieu"_s << u"lieu"_s;
        QTest::newRow("nobody may read") << u"revoke select on public.events from anon"_s
                                         << u"grant select on public.events to anon"_s
                                         << u"ne peut pas être lue avec la clé publique"_s;
        QTest::newRow("anybody may publish")
            << u"grant insert on public.events to anon; create policy hole on public.events for "
               "insert to anon with check (true)"_s
            << u"drop policy hole on public.events; revoke insert on public.events from anon"_s
            << u"peut publier des événements"_s;
        QTest::newRow("anybody may change and delete")
            << u"grant update, delete on public.events to anon"_s
            << u"revoke update, delete on public.events from anon"_s
            << u"peut modifier et supprimer des événements"_s;
        QTest::newRow("a row that cannot be read")
            << u"alter table public.events alter column titre drop not null; update public.events "
               "set titre = null where id = (select id from public.events limit 1)"_s
            << u"update public.events set titre = 'Fête' where titre is null; alter table "
               "public.events alter column titre set not null"_s
            << u"ne peut pas lire les événements"_s;
    }
    void whatTheDatabaseLacksIsNamed()
    {
        QFETCH(QString, fault);
        QFETCH(QString, mend);
        QFETCH(QString, told);
        QVERIFY(alter(fault));
        const Outcome outcome = checkService();
        QVERIFY(alter(mend));
        QCOMPARE(outcome.exitCode, 1);
        const QStringList named = faults(outcome);
        QVERIFY2(named.size() == 1 && named.first().contains(told), qPrintable(outcome.output));
        QCOMPARE(faults(checkService()), QStringList());
    }

    void nothingOfAnOpenTableIsLeftChanged()
    {
        QVERIFY(alter(u"alter table public.events disable row level security; "
                      "alter table public.events alter column titre drop not null; "
                      "grant insert, update, delete on public.events to anon; "
                      "create table public.before as select * from public.events"_s));
        const Outcome outcome = checkService();
        QCOMPARE(outcome.exitCode, 1);
        QVERIFY(alter(u"do $$ begin if exists ((select * from public.events except select * from "
                      "public.before) union all (select * from public.before except select * from "
                      "public.events)) then raise 'something is left'; end if; end $$"_s));
        QVERIFY(alter(u"drop table public.before; "
                      "alter table public.events enable row level security; "
                      "alter table public.events alter column titre set not null; "
                      "revoke insert, update, delete on public.events from anon"_s));
    }

    void aCapThatHidesTheComingEventsIsFound()
    {
        const LocalService service({u"--max-rows"_s, u"10"_s});
        QVERIFY(service.isRunning());
        const Outcome outcome = check(service.url(), service.key());
        QCOMPARE(outcome.exitCode, 1);
        QVERIFY2(outcome.output.contains(u"les événements à venir sont cachés"),
                 qPrintable(outcome.output));
    }

    void theWayOfConfirmingIsTold()
    {
        const LocalService service({u"--confirm-email"_s});
        QVERIFY(service.isRunning());
        const Outcome confirming = check(service.url(), service.key());
        QCOMPARE(confirming.exitCode, 0);
        QVERIFY2(confirming.output.contains(u"serveur SMTP"), qPrintable(confirming.output));
        QVERIFY(checkService().output.contains(u"ne sont pas confirmées"));
    }

    void aWrongKeyIsTold()
    {
        const Outcome outcome = check(m_service->url(), u"sb_publishable_wrong"_s);
        QCOMPARE(outcome.exitCode, 1);
        QVERIFY2(faults(outcome).value(0).contains(u"La clé est refusée"),
                 qPrintable(outcome.output));
    }

    void aSecretKeyIsNotEvenSent()
    {
        HttpServer server;
        server.answer(HttpAnswer::whole(200, "[]"));
        // {"role":"service_role"}
        for (const QString &key :
             {u"sb_secret_abc"_s, u"e30.eyJyb2xlIjoic2VydmljZV9yb2xlIn0.c2ln"_s}) {
            const Outcome outcome = check(server.base(), key);
            QCOMPARE(outcome.exitCode, 1);
            QVERIFY2(outcome.output.contains(u"clé secrète"), qPrintable(outcome.output));
        }
        QCOMPARE(server.requests().size(), 0);
        QVERIFY(!isSecretKey(u"sb_publishable_abc"));
        QVERIFY(!isSecretKey(u"e30.eyJyb2xlIjoiYW5vbiJ9.c2ln")); // {"role":"anon"}
    }

    void clocksThatDifferAreTold_data()
    {
        QTest::addColumn<int>("minutes");
        QTest::addColumn<int>("exitCode");
        QTest::newRow("agree") << 0 << 0;
        QTest::newRow("an hour behind") << -60 << 1;
        QTest::newRow("a day ahead") << 1440 << 1;
    }
    void clocksThatDifferAreTold()
    {
        QFETCH(int, minutes);
        QFETCH(int, exitCode);
        const QDateTime date = QDateTime::currentDateTimeUtc().addSecs(qint64{60} * minutes);
        HttpServer server;
        server.answerWith([&date](const HttpRequest &request) {
            const HttpHeaders headers{
                {"Date",
                 QLocale::c().toString(date, u"ddd, dd MMM yyyy HH:mm:ss 'GMT'"_s).toLatin1()}};
            if (request.target.startsWith("/auth/"))
                return HttpAnswer::whole(200, R"({"disable_signup":false})", headers);
            return HttpAnswer::whole(request.method == "GET" ? 200 : 401, "[]", headers);
        });
        const Outcome outcome = check(server.base(), u"clef"_s);
        QVERIFY2(outcome.exitCode == exitCode, qPrintable(outcome.output));
        QCOMPARE(outcome.output.contains(u"diffèrent de"), exitCode == 1);
    }

    void aClosedSignUpIsTold()
    {
        HttpServer server;
        server.answerWith([](const HttpRequest &request) {
            if (request.target.startsWith("/auth/"))
                return HttpAnswer::whole(200,
                                         R"({"disable_signup":true,"external":{"email":false}})");
            return HttpAnswer::whole(request.method == "GET" ? 200 : 401, "[]");
        });
        const Outcome outcome = check(server.base(), u"clef"_s);
        QCOMPARE(outcome.exitCode, 1);
        QVERIFY(outcome.output.contains(u"L'inscription est fermée"));
        QVERIFY(outcome.output.contains(u"La connexion par e-mail est fermée"));
    }

    void aProjectOutOfReachIsToldByTheExitCode()
    {
        const Outcome refused = check(u"http://127.0.0.1:%1"_s.arg(freePort()), u"clef"_s);
        QCOMPARE(refused.exitCode, 3);
        QVERIFY(refused.output.contains(u"le serveur refuse la connexion"));
        QCOMPARE(check(u"https://nowhere.invalid"_s, u"clef"_s).exitCode, 3);
    }

    void aCertificateThatNobodyVouchesForIsTold_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("told");
        QTest::newRow("unknown authority") << u"localhost"_s << u"aucune autorité connue"_s;
        QTest::newRow("another address") << u"ailleurs.example"_s << u"pour une autre adresse"_s;
    }
    void aCertificateThatNobodyVouchesForIsTold()
    {
        QFETCH(QString, name);
        QFETCH(QString, told);
        const QTemporaryDir folder;
        const QString key = folder.filePath(u"key"_s);
        const QString wish = folder.filePath(u"request"_s);
        const QString certificate = folder.filePath(u"certificate"_s);
        const Outcome asked = run(u"openssl"_s,
                                  {u"req"_s, u"-new"_s, u"-newkey"_s, u"ec"_s, u"-pkeyopt"_s,
                                   u"ec_paramgen_curve:P-256"_s, u"-nodes"_s, u"-keyout"_s, key,
                                   u"-out"_s, wish, u"-subj"_s, u"/CN="_s + name});
        QVERIFY2(asked.exitCode == 0, qPrintable(asked.output));
        const Outcome made = run(u"openssl"_s,
                                 {u"x509"_s, u"-req"_s, u"-in"_s, wish, u"-signkey"_s, key,
                                  u"-days"_s, u"30"_s, u"-out"_s, certificate});
        QVERIFY2(made.exitCode == 0, qPrintable(made.output));

        const Outcome outcome = checkBehind(certificate, key);
        QCOMPARE(outcome.exitCode, 3);
        QVERIFY2(faults(outcome).value(0).contains(told), qPrintable(outcome.output));
    }

    void aCertificateThatHasExpiredIsTold()
    {
        const QTemporaryDir folder;
        const auto kept = [&](const QString &name, const QByteArray &text) {
            QFile file(folder.filePath(name));
            return file.open(QIODevice::WriteOnly) && file.write(text) == text.size();
        };
        QVERIFY(kept(u"certificate"_s, TestCertificates::expired));
        QVERIFY(kept(u"key"_s, TestCertificates::key));
        const Outcome outcome =
            checkBehind(folder.filePath(u"certificate"_s), folder.filePath(u"key"_s));
        QCOMPARE(outcome.exitCode, 3);
        QVERIFY2(faults(outcome).value(0).contains(u"il a expiré"), qPrintable(outcome.output));
    }

    void aCallThatIsWrittenWronglyShowsHow()
    {
        const Outcome outcome =
            run(QStringLiteral(AMORVELLE_CHECK_PROGRAM), {u"https://x.supabase.co"_s});
        QCOMPARE(outcome.exitCode, 2);
        QVERIFY(outcome.output.startsWith(u"Usage : amorvelle-check"));
    }
};

QTEST_GUILESS_MAIN(TestProjectCheck)
#include "test_project_check.moc"
