#include "support/LocalService.h"
#include "support/ServiceClient.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QJsonDocument>
#include <QRegularExpression>
#include <QTest>
#include <QTimeZone>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

QString today()
{
    return QDateTime::currentDateTimeUtc()
        .toTimeZone(QTimeZone("Europe/Paris"))
        .date()
        .toString(Qt::ISODate);
}

QByteArray inDatabase(const LocalService &service, const QString &statement)
{
    QProcess psql;
    psql.start(u"psql"_s,
               {u"-h"_s, service.socketFolder(), u"-U"_s, u"postgres"_s, u"-d"_s, u"postgres"_s,
                u"-qAt"_s, u"-v"_s, u"ON_ERROR_STOP=1"_s, u"-c"_s, statement});
    psql.waitForFinished();
    return psql.exitCode() == 0 ? psql.readAllStandardOutput().trimmed()
                                : "FAILED: " + psql.readAllStandardError();
}

QByteArray databaseLog(const LocalService &service)
{
    QFile file(service.dataFolder() + u"/postgres.log"_s);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

void write(const QString &path, const QByteArray &content)
{
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
    file.write(content);
}

} // namespace

/// What a person meets who tries the program out, today, next month and after a failure.
class TestServiceTryout : public QObject {
    Q_OBJECT

private:
    static ServiceReply get(LocalService &service, const QByteArray &target)
    {
        return exchange(service.url(), "GET", target, {{"apikey", service.key().toLatin1()}});
    }
    /// The days that a query gives, as text.
    static QStringList days(LocalService &service, const QByteArray &query)
    {
        QStringList texts;
        const QJsonArray rows = get(service, "/rest/v1/events?select=date_texte&" + query).array();
        for (const QJsonValue &row : rows)
            texts.append(row[u"date_texte"_s].toString());
        return texts;
    }

private Q_SLOTS:
    void aFaultOfADatabaseFunctionIsTheServersAndItsRefusalTheClients_data()
    {
        QTest::addColumn<QString>("raised");
        QTest::addColumn<int>("status");
        QTest::newRow("a refusal in words") << u"'Pas le dimanche'"_s << 400;
        QTest::newRow("no row where there should be one") << u"no_data_found"_s << 500;
        QTest::newRow("a row too many") << u"too_many_rows"_s << 500;
    }
    void aFaultOfADatabaseFunctionIsTheServersAndItsRefusalTheClients()
    {
        QFETCH(QString, raised);
        QFETCH(int, status);
        LocalService service;
        QVERIFY2(service.isRunning(), qPrintable(service.output()));
        QCOMPARE(inDatabase(service,
                            u"create function public.ends() returns boolean language plpgsql "
                            "set search_path = '' as $$begin raise %1; end$$; "
                            "create policy ends on public.events as restrictive for select "
                            "to anon using (public.ends())"_s.arg(raised)),
                 QByteArray());
        QCOMPARE(get(service, "/rest/v1/events").status, status);
    }

    void theSampleEventsAreAroundTodayAgainAndWhatMembersDidStays()
    {
        LocalService service({u"--renew-seed"_s});
        QVERIFY2(service.isRunning(), qPrintable(service.output()));
        QCOMPARE(days(service, "titre=eq.Bal%20folk").size(), 1);
        const QByteArray fresh = get(service,
                                     "/rest/v1/events?select=id,titre,starts_at,date_texte,"
                                     "heure_texte,user_id&order=id")
                                     .body;

        // Forty days pass: everything is that much older. Over a change of the clocks, too.
        QCOMPARE(inDatabase(service, uR"(
            update public.events set ts = ts - interval '960 hours',
                starts_at = ((starts_at at time zone 'Europe/Paris') - interval '40 days') at time zone 'Europe/Paris',
                date_texte = case when date_texte ~ '^[0-9]{4}-' then (date_texte::date - 40)::text else date_texte end)"_s),
                 QByteArray());
        QVERIFY(days(service, "titre=eq.Veill%C3%A9e%20aux%20%C3%A9toiles").first() < today());
        // Members have changed one, removed one and added one meanwhile.
        QCOMPARE(inDatabase(service, uR"(
            update public.events set lieu = 'Ailleurs' where titre = 'Bal folk';
            delete from public.events where titre = 'Yoga doux';
            insert into public.events (titre, date_texte) values ('À nous', '2026-01-02'))"_s),
                 QByteArray());
        const QByteArray members =
            get(service, "/rest/v1/events?or=(titre.eq.Bal%20folk,titre.eq.%C3%80%20nous)&order=id")
                .body;

        QVERIFY(service.stop());
        QVERIFY2(service.start(), qPrintable(service.output()));
        QCOMPARE(
            get(service, "/rest/v1/events?or=(titre.eq.Bal%20folk,titre.eq.%C3%80%20nous)&order=id")
                .body,
            members);
        QCOMPARE(days(service, "titre=eq.Yoga%20doux"), QStringList());
        QCOMPARE(days(service, "titre=eq.Veill%C3%A9e%20aux%20%C3%A9toiles"), QStringList(today()));
        // All others are as they were when they were fresh.
        const QJsonArray before = QJsonDocument::fromJson(fresh).array();
        const QJsonArray after =
            get(service,
                "/rest/v1/events?select=id,titre,starts_at,date_texte,heure_texte,user_id"
                "&order=id")
                .array();
        int same = 0;
        for (const QJsonValue &row : before)
            same += std::count(after.begin(), after.end(), row) == 1 ? 1 : 0;
        QCOMPARE(same, before.size() - 2);
        QCOMPARE(after.size(), before.size());
        QVERIFY(service.stop());
    }

    void todaysFirstEventHasAnOwner()
    {
        LocalService service;
        const QJsonArray rows = get(service,
                                    "/rest/v1/events?select=titre,user_id&date_texte=eq."
                                        + today().toLatin1() + "&starts_at=is.null")
                                    .array();
        QVERIFY(!rows.isEmpty());
        for (const QJsonValue &row : rows)
            QVERIFY2(row[u"user_id"_s].isString(), qPrintable(row[u"titre"_s].toString()));
        QVERIFY(service.stop());
    }

    void aTableWithoutGrantsIsClosedHereToo()
    {
        QTemporaryDir supabase;
        QVERIFY(QDir(supabase.path()).mkdir(u"migrations"_s));
        write(supabase.filePath(u"migrations/1_recettes.sql"_s),
              "create table public.recettes (id int primary key);\n"
              "create table public.menus (id int primary key);\n"
              "grant select on public.menus to anon;\n");
        LocalService service({u"--supabase"_s, supabase.path()});
        QVERIFY2(service.isRunning(), qPrintable(service.output()));
        const ServiceReply closed = get(service, "/rest/v1/recettes");
        QCOMPARE(closed.status, 401);
        QCOMPARE(closed.object()[u"message"_s].toString(),
                 u"permission denied for table recettes"_s);
        QCOMPARE(get(service, "/rest/v1/menus").body, "[]");
        QVERIFY(service.stop());
    }

    void textsAreOrderedAndComparedAsInAHostedProject()
    {
        LocalService service;
        QCOMPARE(inDatabase(service,
                            u"select string_agg(x, ' ' order by x) from "
                            "unnest(array['Zoé', 'école', 'Été', 'eau', 'Anne']) as x"_s),
                 "Anne eau école Été Zoé");
        QCOMPARE(inDatabase(service, u"select 'ÉTOILES' ilike 'étoiles'"_s), "t");
        QVERIFY(service.stop());
    }

    void aDatabaseThatCannotStartIsToldInOneLineAtOnce()
    {
        LocalService service;
        QVERIFY(service.isRunning());
        QVERIFY(service.stop());
        service.output();
        QFile::remove(service.dataFolder() + u"/cluster/global/pg_control"_s);
        const qsizetype said = service.output().size();
        const qsizetype logged = databaseLog(service).size();
        QVERIFY(!service.start());
        // Once, and not again and again until the patience for an old server ends.
        QCOMPARE(databaseLog(service).mid(logged).count("pg_control"), 1);
        const QString message = service.output().mid(said).trimmed();
        QCOMPARE(message.count(u'\n'), 0);
        QVERIFY2(message.contains(u"the database ended at once ("), qPrintable(message));
        QVERIFY2(message.endsWith(u"to begin anew, without what was entered, remove "_s
                                  + service.dataFolder() + u"/cluster"_s),
                 qPrintable(message));
        QDir(service.dataFolder() + u"/cluster"_s).removeRecursively();
        QVERIFY2(service.start(), qPrintable(service.output()));
        QVERIFY(service.stop());
    }

    void theAccountsOfAnEarlierFolderStaySignedIn()
    {
        LocalService service;
        QVERIFY(service.stop());
        const QString path = service.dataFolder() + u"/keys.json"_s;
        write(path,
              R"({"secret":"0123456789abcdef","anon_key":"a.b.c","service_role_key":"d.e.f"})");
        QVERIFY2(service.start(), qPrintable(service.output()));
        QVERIFY(service.key().startsWith(u"sb_publishable_"_s));
        const QByteArray token =
            signedToken({{u"role"_s, u"authenticated"_s},
                         {u"sub"_s, u"a0000000-0000-4000-8000-000000000001"_s}},
                        "0123456789abcdef");
        const ServiceReply reply = exchange(service.url(), "POST", "/rest/v1/events?select=user_id",
                                            {{"apikey", service.key().toLatin1()},
                                             {"Authorization", "Bearer " + token},
                                             {"Prefer", "return=representation"}},
                                            R"({"titre":"X"})");
        QCOMPARE(reply.body, R"([{"user_id":"a0000000-0000-4000-8000-000000000001"}])");
        QVERIFY(service.stop());
    }

    void theKeysLookLikeAHostedProjects()
    {
        LocalService service;
        QFile file(service.dataFolder() + u"/keys.json"_s);
        QVERIFY(file.open(QIODevice::ReadOnly));
        const QJsonObject keys = QJsonDocument::fromJson(file.readAll()).object();
        const QRegularExpression form(u"^sb_(publishable|secret)_[\\w-]{22}_[\\w-]{8}$"_s);
        QVERIFY(form.match(service.key()).hasMatch());
        QCOMPARE(keys[u"publishable_key"_s].toString(), service.key());
        QVERIFY(form.match(keys[u"secret_key"_s].toString()).hasMatch());
        QVERIFY(service.stop());
    }
};

QTEST_GUILESS_MAIN(TestServiceTryout)
#include "test_service_tryout.moc"
