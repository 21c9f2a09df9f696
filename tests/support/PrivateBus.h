#pragma once

#include <QProcess>
#include <QStringList>
#include <QTemporaryDir>

/// A session bus of the test's own, so that no test talks to the desktop it runs on. The
/// environment names it to everything in this process, and to all that it starts, from then on.
class PrivateBus {
public:
    /// `services`: those of this machine's that the bus starts when they are asked for; no others.
    explicit PrivateBus(const QStringList &services = {});
    ~PrivateBus();
    Q_DISABLE_COPY_MOVE(PrivateBus)

    const QString &address() const { return m_address; }

private:
    QString writeConfiguration(const QStringList &services) const;

    QTemporaryDir m_folder;
    QProcess m_daemon;
    QString m_address;
};
