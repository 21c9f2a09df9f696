#pragma once

#include <QByteArray>
#include <QString>

/// Where the last events reply that could not be decoded is left: "/tmp/events-response.json".
QString defaultDiagnosticFile();

/// Replaces the file at `path` by one that holds `bytes` and that its owner alone may read, at once
/// or not at all. Nothing is written through a symbolic link, nor in place of one, of a folder or
/// of a file that another user owns: the folder is one that all users share. Whether it was
/// written. May run on any thread.
bool writeDiagnosticFile(const QString &path, const QByteArray &bytes);
