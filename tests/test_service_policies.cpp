#include "support/LocalService.h"

#include <QDir>
#include <QTest>

/// Runs supabase/tests, which are written in SQL for pgTAP, on the service's own database.
class TestServicePolicies : public QObject {
    Q_OBJECT

private:
    QProcessEnvironment environment() const
    {
        QProcessEnvironment variables = QProcessEnvironment::systemEnvironment();
        variables.insert(QStringLiteral("PGHOST"), m_service.socketFolder());
        variables.insert(QStringLiteral("PGUSER"), QStringLiteral("postgres"));
        variables.insert(QStringLiteral("PGDATABASE"), QStringLiteral("postgres"));
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
        QVERIFY2(run(QStringLiteral("psql"),
                     {QStringLiteral("-q"), QStringLiteral("-v"), QStringLiteral("ON_ERROR_STOP=1"),
                      QStringLiteral("-c"),
                      QStringLiteral("create extension pgtap with schema extensions")},
                     &output)
                     == 0,
                 output);
    }

    void theDatabaseKeepsItsRules_data()
    {
        QTest::addColumn<QString>("file");
        const QDir folder(QStringLiteral(AMORVELLE_POLICY_TESTS));
        const QStringList files = folder.entryList({QStringLiteral("*.sql")});
        QVERIFY2(!files.isEmpty(), qPrintable(folder.path()));
        for (const QString &file : files) {
            QTest::newRow(qPrintable(file)) << folder.filePath(file);
        }
    }
    void theDatabaseKeepsItsRules()
    {
        QFETCH(QString, file);
        QByteArray output;
        const int exitCode = run(QStringLiteral("pg_prove"), {QStringLiteral("-v"), file}, &output);
        QVERIFY2(exitCode == 0, output);
        // A file without a single check would pass, too.
        QVERIFY2(output.contains("\nok 1"), output);
    }
};

QTEST_GUILESS_MAIN(TestServicePolicies)
#include "test_service_policies.moc"
