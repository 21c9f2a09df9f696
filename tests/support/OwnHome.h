#pragma once

#include <QFile>
#include <QTemporaryDir>

/// A configuration folder of the test's own, in place of the user's: a window forgets what is
/// remembered there. To be made first in main().
class OwnHome {
public:
    OwnHome() { qputenv("XDG_CONFIG_HOME", QFile::encodeName(m_folder.path())); }

    QString path() const { return m_folder.path(); }

private:
    QTemporaryDir m_folder;
};
