#pragma once

#include <QProcess>
#include <QStringList>
#include <QTemporaryDir>

using namespace Qt::StringLiterals;

/// The local service on a database of its own in a temporary folder, for tests of the whole stack.
/// It ends with this object, and also when the test program is killed.
class LocalService {
public:
    /// Starts it and waits until it answers; `isRunning` tells whether it does. `options` are added
    /// to its command line.
    explicit LocalService(const QStringList &options = {});
    LocalService(const LocalService &) = delete;
    LocalService &operator=(const LocalService &) = delete;
    ~LocalService();

    bool isRunning() const { return !m_url.isEmpty() && m_process.state() == QProcess::Running; }
    /// For SUPABASE_URL and SUPABASE_KEY.
    QString url() const { return m_url; }
    QString key() const { return m_key; }

    /// Starts it again on the same data, with the options it had, on a new port.
    bool start();
    /// Asks it to end and waits; whether it ended well.
    bool stop();
    /// Kills it without warning.
    void kill();

    /// All it has written to its standard output (one line a request) and standard error so far.
    QString output();
    QString dataFolder() const { return m_folder.filePath(u"data"_s); }
    qint64 processId() const { return m_process.processId(); }
    /// The process of its database server.
    qint64 databaseProcessId() const;
    /// The folder of the database server's Unix socket.
    QString socketFolder() const;

private:
    QString readyFile() const { return m_folder.filePath(u"ready"_s); }

    QTemporaryDir m_folder;
    QStringList m_options;
    QProcess m_process;
    QString m_url;
    QString m_key;
    QByteArray m_output;
};
