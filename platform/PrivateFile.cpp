#include "platform/PrivateFile.h"

#include <QDirIterator>
#include <QFile>
#include <QFileInfo>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <utility>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

/// Between the file's name and what makes the draft's its own. Six signs alone would do, and would
/// be those of "backup".
constexpr char draftMark[] = ".draft-";

/// A signal that arrives meanwhile, or a host that takes a part, is no failure.
bool writeAll(int file, const QByteArray &bytes)
{
    for (qsizetype done = 0; done < bytes.size();) {
        const ssize_t count =
            ::write(file, bytes.constData() + done, static_cast<size_t>(bytes.size() - done));
        if (count == 0 || (count < 0 && errno != EINTR))
            return false;
        done += std::max<ssize_t>(count, 0);
    }
    return true;
}

/// Holds the lock while it lives; the host lets go of it too when the program is killed.
class Draft {
public:
    explicit Draft(const QByteArray &target)
        : m_path(target + draftMark + "XXXXXX")
        // Only the user may read what mkostemp makes.
        , m_file(::mkostemp(m_path.data(), O_CLOEXEC))
    {
        if (m_file >= 0)
            ::flock(m_file, LOCK_EX);
    }
    ~Draft() { close(); }
    Q_DISABLE_COPY_MOVE(Draft)

    bool isOpen() const { return m_file >= 0; }
    int file() const { return m_file; }
    const char *path() const { return m_path.constData(); }
    /// Whether it was taken for left behind in the moment before it was locked.
    bool isGone() const
    {
        struct stat about;
        return ::fstat(m_file, &about) == 0 && about.st_nlink == 0;
    }
    bool close() { return m_file < 0 || ::close(std::exchange(m_file, -1)) == 0; }

private:
    QByteArray m_path;
    int m_file;
};

bool isDraftOf(const QString &target, const QString &name)
{
    const QString start = target + QLatin1StringView(draftMark);
    return name.size() == start.size() + 6 && name.startsWith(start);
}

void removeIfLeftBehind(const QString &path)
{
    const QByteArray name = QFile::encodeName(path);
    const int file = ::open(name.constData(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC);
    if (file < 0)
        return;
    struct stat about;
    if (::fstat(file, &about) == 0 && S_ISREG(about.st_mode) && about.st_uid == ::geteuid()
        && ::flock(file, LOCK_EX | LOCK_NB) == 0)
        ::unlink(name.constData());
    ::close(file);
}

} // namespace

bool writePrivateFile(const QString &path, const QByteArray &bytes)
{
    removeDrafts(path);
    const QByteArray target = QFile::encodeName(path);
    // Written aside and put in place whole.
    for (;;) {
        Draft draft(target);
        if (!draft.isOpen())
            return false;
        if (draft.isGone())
            continue;
        const bool isWritten = writeAll(draft.file(), bytes);
        if (isWritten && std::rename(draft.path(), target.constData()) == 0)
            return draft.close();
        ::unlink(draft.path());
        return false;
    }
}

void removeDrafts(const QString &path)
{
    const QFileInfo target(path);
    QDirIterator entries(target.path(), QDir::Files | QDir::Hidden | QDir::System);
    while (entries.hasNext()) {
        const QString entry = entries.next();
        if (isDraftOf(target.fileName(), entries.fileName()))
            removeIfLeftBehind(entry);
    }
}
