#pragma once

#include <QByteArray>
#include <QString>

/// Puts a file that holds `bytes` and that its owner alone may read in the place of what stands at
/// `path`: as a whole, or not at all. A symbolic link there is replaced, never followed; a folder
/// stays. Whether it was written. May run on any thread.
bool writePrivateFile(const QString &path, const QByteArray &bytes);

/// Removes the drafts of the file at `path` that programs left behind which were killed while they
/// wrote it. One that is being written stays. May run on any thread.
void removeDrafts(const QString &path);
