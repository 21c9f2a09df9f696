// Writing a file while the host interrupts: this program's own write() and flock()
// stand before the host's.

#include "platform/PrivateFile.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <algorithm>
#include <cerrno>

#include <csignal>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

enum class Disk { Willing, Interrupted, Full, Killing, Meddling, MeddlingAtOnce };

// Only what runs between the two lines of a test that set it.
Disk disk = Disk::Willing;
int calls = 0;
QString meddledWith;

} // namespace

extern "C" ssize_t write(int file, const void *bytes, size_t count)
{
    if (disk == Disk::Full) {
        errno = ENOSPC;
        return -1;
    }
    if (disk == Disk::Killing && ++calls > 1)
        raise(SIGKILL);
    if (disk == Disk::Killing)
        count = 4;
    if (disk == Disk::Meddling) {
        // Somebody tidies up meanwhile.
        disk = Disk::Willing;
        removeDrafts(meddledWith);
    }
    if (disk == Disk::Interrupted) {
        // Every other call is broken off, and those between take three bytes at the most.
        if (++calls % 2 == 1) {
            errno = EINTR;
            return -1;
        }
        count = std::min<size_t>(count, 3);
    }
    return syscall(SYS_write, file, bytes, count);
}

extern "C" int flock(int file, int operation) noexcept
{
    if (disk == Disk::MeddlingAtOnce) {
        // Somebody tidies up before it is locked.
        disk = Disk::Willing;
        removeDrafts(meddledWith);
    }
    return static_cast<int>(syscall(SYS_flock, file, operation));
}

class TestPrivateFile : public QObject {
    Q_OBJECT

    QTemporaryDir m_folder;

    QString path() const { return m_folder.filePath(u"record"_s); }
    QByteArray content() const
    {
        QFile file(path());
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("(no file)");
    }
    bool write(const QByteArray &bytes, Disk as) const
    {
        disk = as;
        const bool isWritten = writePrivateFile(path(), bytes);
        disk = Disk::Willing;
        return isWritten;
    }

private Q_SLOTS:
    void init() { QVERIFY(writePrivateFile(path(), "what stood there")); }

    void aSignalInTheMiddleOfItLosesNothing()
    {
        QVERIFY(write("a record of some length", Disk::Interrupted));
        QCOMPARE(content(), "a record of some length");
        QVERIFY(calls > 10);
    }

    void whatAKilledProgramLeftIsRemoved()
    {
        const QStringList only{u"record"_s};
        for (const bool isWrittenNext : {true, false}) {
            const pid_t child = fork();
            if (child == 0) {
                calls = 0;
                write("a secret", Disk::Killing);
                _exit(0);
            }
            int status = 0;
            QCOMPARE(waitpid(child, &status, 0), child);
            QVERIFY(WIFSIGNALED(status));
            const auto files = [this] {
                return QDir(m_folder.path()).entryList(QDir::Files | QDir::Hidden);
            };
            QCOMPARE(files().size(), 2);
            QCOMPARE(content(), "what stood there");

            if (isWrittenNext)
                QVERIFY(write("what stood there", Disk::Willing));
            else
                removeDrafts(path());
            QCOMPARE(files(), only);
            QCOMPARE(content(), "what stood there");
        }
    }

    void whatIsBeingWrittenIsNotTakenForLeftBehind()
    {
        meddledWith = path();
        QVERIFY(write("whole", Disk::Meddling));
        QCOMPARE(content(), "whole");
    }

    void whatIsTidiedAwayAtOnceIsBegunAnew()
    {
        meddledWith = path();
        QVERIFY(write("whole", Disk::MeddlingAtOnce));
        QCOMPARE(content(), "whole");
    }

    void aProgramWithoutStandardInputKeepsNoFileOpen()
    {
        const int input = dup(STDIN_FILENO);
        ::close(STDIN_FILENO); // its number is the next to be given
        const bool isWritten = writePrivateFile(path(), "a record");
        const bool isOpen = fcntl(STDIN_FILENO, F_GETFD) >= 0;
        dup2(input, STDIN_FILENO);
        ::close(input);
        QVERIFY(isWritten);
        QVERIFY(!isOpen);
        QCOMPARE(content(), "a record");
    }

    void whatOnlyLooksLikeADraftStays()
    {
        const QStringList names{u"record.backup"_s, u"record.draft-longer1"_s,
                                u"record.draft-txt"_s, u"records.draft-Ab3dEf"_s};
        QVERIFY(QDir(m_folder.path()).mkdir(u"record.draft-folder"_s));
        for (const QString &name : names) {
            QFile file(m_folder.filePath(name));
            QVERIFY(file.open(QIODevice::WriteOnly));
        }
        removeDrafts(path());
        QCOMPARE(QDir(m_folder.path()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot).size(),
                 6);
        for (const QString &name : names)
            QVERIFY(QFile::remove(m_folder.filePath(name)));
        QVERIFY(QDir(m_folder.path()).rmdir(u"record.draft-folder"_s));
    }

    void aFullDiskLeavesTheOldFileAndNoOther()
    {
        QVERIFY(!write("new", Disk::Full));
        QCOMPARE(content(), "what stood there");
        QCOMPARE(QDir(m_folder.path()).entryList(QDir::Files | QDir::Hidden),
                 QStringList{u"record"_s});
    }
};

QTEST_GUILESS_MAIN(TestPrivateFile)
#include "test_private_file.moc"
