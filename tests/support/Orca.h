#pragma once

#include <QProcess>
#include <QStringList>
#include <QTemporaryDir>

/// The screen reader of Debian's desktops, at work on the screen and the buses that the environment
/// names, with a voice that notes what it says. Where the environment variable
/// AMORVELLE_ORCA_FOLDER names a folder, it writes there what it knows and thinks, a file for each
/// test.
class Orca {
public:
    /// What it needs that this machine lacks; empty when it can be started.
    static QStringList missing();

    /// Starts it and waits until it says that it is there.
    Orca();
    ~Orca();
    Q_DISABLE_COPY_MOVE(Orca)

    /// What it has said since the start or the last call of forget().
    const QStringList &heard() const { return m_heard; }
    bool hasSaid(const QString &words) const;
    int wordsHeard() const;
    void forget() { m_heard.clear(); }

private:
    void startVoice();
    void start();

    QTemporaryDir m_folder;
    QStringList m_heard;
    QProcess m_voice; ///< prints what it is given to say
    QProcess m_reader;
};
