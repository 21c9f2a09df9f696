#include "platform/PrivateFile.h"

#include <QFile>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstdlib>

#include <fcntl.h>
#include <unistd.h>

namespace {

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

} // namespace

bool writePrivateFile(const QString &path, const QByteArray &bytes)
{
    // Written aside and put in place whole. mkostemp makes a new file that only the user may read.
    const QByteArray target = QFile::encodeName(path);
    QByteArray aside = target + ".XXXXXX";
    const int file = ::mkostemp(aside.data(), O_CLOEXEC);
    if (file < 0)
        return false;
    const bool isWritten = writeAll(file, bytes);
    const bool isClosed = ::close(file) == 0;
    if (isWritten && isClosed && std::rename(aside.constData(), target.constData()) == 0)
        return true;
    ::unlink(aside.constData());
    return false;
}
