// The copy of a reply that could not be decoded, left in a folder that all users share.

#include "backend/DiagnosticFile.h"
#include "support/Await.h"
#include "support/HttpServer.h"
#include "support/LocalBackend.h"

#include <QDir>
#include <QFileInfo>
#include <QTemporaryDir>
#include <QTest>

#include <sys/stat.h>
#include <unistd.h>

#include <memory>

using namespace Qt::StringLiterals;

namespace {

QByteArray content(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("(no file)");
}

void put(const QString &path, const QByteArray &bytes)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
        qFatal("cannot write %s", qPrintable(path));
}

mode_t modeOf(const QString &path)
{
    struct stat found;
    return lstat(QFile::encodeName(path).constData(), &found) == 0 ? found.st_mode & 07777 : 0;
}

} // namespace

class TestBackendDiagnostics : public QObject {
    Q_OBJECT

    std::unique_ptr<QTemporaryDir> m_folder;

    QString path() const { return m_folder->filePath(u"events-response.json"_s); }
    QStringList entries() const
    {
        return QDir(m_folder->path())
            .entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot);
    }

private Q_SLOTS:
    void init() { m_folder = std::make_unique<QTemporaryDir>(); }

    void theProgramLeavesItWhereTheMessageSays()
    {
        QCOMPARE(defaultDiagnosticFile(), u"/tmp/events-response.json"_s);
    }

    void anUndecodableReplyIsKeptByteForByte()
    {
        HttpServer server;
        const QByteArray body("{\"a\": \"\xE9\r\n\0\"}", 13);
        server.answer(HttpAnswer::whole(200, body));
        LocalBackend backend({server.base(), u"k"_s}, {}, path());
        QVERIFY(outcomeOf(backend.fetchEvents()).failure().startsWith(u"Decode error: "_s));
        QCOMPARE(content(path()), body);
        QCOMPARE(modeOf(path()), mode_t{0600});
        QCOMPARE(entries(), QStringList{u"events-response.json"_s});
    }

    void anEmptyReplyIsKeptToo()
    {
        HttpServer server;
        server.answer(HttpAnswer::whole(200, {}));
        LocalBackend backend({server.base(), u"k"_s}, {}, path());
        QVERIFY(outcomeOf(backend.fetchEvents()).failure().startsWith(u"Decode error: "_s));
        QCOMPARE(entries(), QStringList{u"events-response.json"_s});
        QCOMPARE(content(path()), QByteArray());
    }

    void onlyWhatCannotBeDecodedIsKept()
    {
        HttpServer server;
        server.answerInTurn({HttpAnswer::whole(200, "[]"), HttpAnswer::whole(500, "{}")});
        LocalBackend backend({server.base(), u"k"_s}, {}, path());
        QCOMPARE(outcomeOf(backend.fetchEvents()).failure(), QString());
        QCOMPARE(outcomeOf(backend.fetchEvents()).failure(), u"HTTP 500: {}"_s);
        QVERIFY(entries().isEmpty());
    }

    void aLaterFailureReplacesTheFile()
    {
        QVERIFY(writeDiagnosticFile(path(), QByteArray(100000, 'x')));
        QVERIFY(writeDiagnosticFile(path(), "short"));
        QCOMPARE(content(path()), "short");
        QCOMPARE(entries().size(), 1);
    }

    void anOpenCopyOfTheOldFileStaysWhole()
    {
        QVERIFY(writeDiagnosticFile(path(), "old"));
        QFile reader(path());
        QVERIFY(reader.open(QIODevice::ReadOnly));
        QVERIFY(writeDiagnosticFile(path(), "new"));
        QCOMPARE(reader.readAll(), "old");
    }

    void aFileThatOthersCouldReadBecomesPrivate()
    {
        put(path(), "old");
        QCOMPARE(chmod(QFile::encodeName(path()).constData(), 0666), 0);
        QVERIFY(writeDiagnosticFile(path(), "new"));
        QCOMPARE(modeOf(path()), mode_t{0600});
    }

    void aWideUmaskDoesNotOpenIt()
    {
        const mode_t before = umask(0);
        const bool isWritten = writeDiagnosticFile(path(), "x");
        umask(before);
        QVERIFY(isWritten);
        QCOMPARE(modeOf(path()), mode_t{0600});
    }

    void aSymbolicLinkIsLeftAlone()
    {
        const QString precious = m_folder->filePath(u"precious"_s);
        put(precious, "precious");
        QVERIFY(QFile::link(precious, path()));
        QVERIFY(!writeDiagnosticFile(path(), "x"));
        QCOMPARE(content(precious), "precious");
        QVERIFY(QFileInfo(path()).isSymLink());
        QCOMPARE(entries().size(), 2);
    }

    void aDanglingLinkIsLeftAlone()
    {
        const QString nowhere = m_folder->filePath(u"nowhere"_s);
        QVERIFY(QFile::link(nowhere, path()));
        QVERIFY(!writeDiagnosticFile(path(), "x"));
        QVERIFY(!QFileInfo::exists(nowhere));
    }

    void aFolderIsLeftAlone()
    {
        QVERIFY(QDir(m_folder->path()).mkdir(u"events-response.json"_s));
        QVERIFY(!writeDiagnosticFile(path(), "x"));
        QVERIFY(QFileInfo(path()).isDir());
        QCOMPARE(entries().size(), 1);
    }

    void aPipeIsLeftAlone()
    {
        QCOMPARE(mkfifo(QFile::encodeName(path()).constData(), 0600), 0);
        QVERIFY(!writeDiagnosticFile(path(), "x"));
        QCOMPARE(entries().size(), 1);
    }

    void anotherUsersFileIsLeftAlone()
    {
        if (geteuid() != 0)
            QSKIP("only root can arrange a file of another user");
        put(path(), "theirs");
        QCOMPARE(chown(QFile::encodeName(path()).constData(), 65534, 65534), 0);
        QVERIFY(!writeDiagnosticFile(path(), "x"));
        QCOMPARE(content(path()), "theirs");
        QCOMPARE(entries().size(), 1);
    }

    void aFailureToWriteChangesNoMessage()
    {
        HttpServer server;
        server.answer(HttpAnswer::whole(200, "{}"));
        const QString nowhere = m_folder->filePath(u"missing/events-response.json"_s);
        LocalBackend backend({server.base(), u"k"_s}, {}, nowhere);
        const QString failure = outcomeOf(backend.fetchEvents()).failure();
        QVERIFY(failure.startsWith(u"Decode error: "_s));
        QVERIFY(
            failure.endsWith(u". Body preview: {}. Saved response to /tmp/events-response.json"_s));
        QVERIFY(entries().isEmpty());
    }
};

QTEST_GUILESS_MAIN(TestBackendDiagnostics)
#include "test_backend_diagnostics.moc"
