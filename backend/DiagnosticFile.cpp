#include "backend/DiagnosticFile.h"

#include "platform/PrivateFile.h"

#include <QFile>

#include <cerrno>

#include <sys/stat.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

bool mayBeReplaced(const QByteArray &path)
{
    struct stat found;
    if (lstat(path.constData(), &found) != 0)
        return errno == ENOENT;
    return S_ISREG(found.st_mode) && found.st_uid == geteuid();
}

} // namespace

QString defaultDiagnosticFile()
{
    return u"/tmp/events-response.json"_s;
}

bool writeDiagnosticFile(const QString &path, const QByteArray &bytes)
{
    return mayBeReplaced(QFile::encodeName(path)) && writePrivateFile(path, bytes);
}
