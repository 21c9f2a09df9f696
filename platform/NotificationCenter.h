#pragma once

#include <QObject>
#include <QString>

/// Announces by name that something process-wide changed.
class NotificationCenter : public QObject {
    Q_OBJECT

public:
    /// The process's own; lives until the process ends.
    static NotificationCenter &defaultCenter();

    /// Emits `posted` at once, on the caller's thread.
    void post(const QString &name) { Q_EMIT posted(name); }

Q_SIGNALS:
    void posted(const QString &name);
};
