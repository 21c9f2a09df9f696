#include "support/LocalService.h"

#include <QDir>
#include <QTest>

using namespace Qt::StringLiterals;

/// Runs supabase/tests, which are written in SQL for pgTAP, on the service's own database.
class TestServicePolicies : public QObject {
    Q_OBJECT

private:
    QProcessEnvironment environment() const
    {
        QProcessEnvironment variables = QProcessEnvironment::systemEnvironment();
        variables.insert(u"PGHOST"_s, m_service.socketFolder());
        variables.insert(u"PGUSER"_s, u"postgres"_s);
        variables.insert(u"PGDATABASE"_s, u"postgres"_s);
        return variables;
    }
    int run(const QString &program, const QStringList &arguments, QByteArray *output)
    {
        QProcess process;
        process.setProcessEnvironment(environment());
        process.setProcessChannelMode(QProcess::MergedChannels);
        process.start(program, arguments);
        process.waitForFinished(120'000);
        *output = process.readAll();
        return process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1;
    }

    LocalService m_service;

private Q_SLOTS:
    void initTestCase()
    {
        QVERIFY(m_service.isRunning());
        QByteArray output;
        QVERIFY2(run(u"psql"_s,
                     {u"-q"_s, u"-v"_s, u"ON_ERROR_STOP=1"_s, u"-c"_s,
                      u"create extension pgtap with schema extensions"_s},
                     &output)
                     == 0,
                 output);
    }

    void theDatabaseKeepsItsRules_data()
    {
        QTest::addColumn<QString>("file");
        const QDir folder(QStringLiteral(AMORVELLE_POLICY_TESTS));
        const QStringList files = folder.entryList({u"*.sql"_s});
        QVERIFY2(!files.isEmpty(), qPrintable(folder.path()));
        for (const QString &file : files)
            QTest::newRow(qPrintable(file)) << folder.filePath(file);
    }
    void theDatabaseKeepsItsRules()
    {
        QFETCH(QString, file);
        QByteArray output;
        const int exitCode = run(u"pg_prove"_s, {u"-v"_s, file}, &output);
        QVERIFY2(exitCode == 0, output);
        // A file without a single check would pass, too.
        QVERIFY2(output.contains("\nok 1"), output);
    }
};

QTEST_GUILESS_MAIN(TestServicePolicies)
#include "test_service_policies.moc"
