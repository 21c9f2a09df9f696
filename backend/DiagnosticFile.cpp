#include "backend/DiagnosticFile.h"

#include <QFile>
#include <QRandomGenerator>

#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

bool mayBeReplaced(const QByteArray &path)
{
    struct stat found;
    if (lstat(path.constData(), &found) != 0)
        return errno == ENOENT;
    return S_ISREG(found.st_mode) && found.st_uid == geteuid();
}

bool writeAll(int file, const QByteArray &bytes)
{
    for (qsizetype done = 0; done < bytes.size();) {
        const ssize_t count =
            write(file, bytes.constData() + done, static_cast<size_t>(bytes.size() - done));
        if (count < 0 && errno != EINTR)
            return false;
        done += std::max<ssize_t>(count, 0);
    }
    return true;
}

} // namespace

bool writeDiagnosticFile(const QString &path, const QByteArray &bytes)
{
    const QByteArray target = QFile::encodeName(path);
    if (!mayBeReplaced(target))
        return false;
    const QByteArray draft =
        target + '.' + QByteArray::number(QRandomGenerator::system()->generate64(), 36);
    const int file = open(draft.constData(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC,
                          S_IRUSR | S_IWUSR);
    if (file < 0)
        return false;
    const bool isWritten = writeAll(file, bytes);
    const bool isClosed = close(file) == 0;
    if (isWritten && isClosed && rename(draft.constData(), target.constData()) == 0)
        return true;
    unlink(draft.constData());
    return false;
}
