#pragma once

#include "service/ChildProcess.h"
#include "service/DataFolder.h"

#include <filesystem>
#include <memory>
#include <optional>
#include <string>

/// A private PostgreSQL server on a cluster in the data folder. It is reached through a Unix socket
/// in a folder that only its user may enter, and listens on no network.
class Cluster {
public:
    /// Makes the cluster when there is none, starts the server and waits until it answers. Throws
    /// StartFailure.
    Cluster(const DataFolder &folder, const std::optional<UnixAccount> &account);
    /// Shuts the server down and waits for it.
    ~Cluster();

    /// How libpq reaches the database as `role`.
    std::string connectionText(const std::string &role) const;
    /// Whether the server has ended without being asked to.
    bool hasEnded() { return m_server->exitCode().has_value(); }

private:
    void initialise();
    void prepareSocketFolder();
    void startServer();

    const DataFolder &m_folder;
    std::optional<UnixAccount> m_account;
    std::filesystem::path m_cluster;
    std::filesystem::path m_log;
    std::filesystem::path m_programs;
    std::filesystem::path m_socketFolder;
    bool m_socketFolderIsTemporary = false;
    std::unique_ptr<ChildProcess> m_server;
};
