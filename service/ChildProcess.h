#pragma once

#include <chrono>
#include <filesystem>
#include <optional>
#include <string>
#include <sys/types.h>
#include <vector>

/// A user of this machine.
struct UnixAccount {
    uid_t user;
    gid_t group;
};

/// Whom PostgreSQL's programs run as: the user `postgres` when this program runs as root, which
/// PostgreSQL refuses to do, and nothing (ourselves) otherwise. Throws StartFailure when there is
/// no such user.
std::optional<UnixAccount> databaseAccount();

/// A program that ends when this one does, in a session of its own so that Ctrl+C in a terminal
/// reaches it only through us. Start it on the main thread: the kernel takes the end of the
/// starting thread for the end of the parent.
class ChildProcess {
public:
    /// Its output goes to the end of the file `log`. Throws StartFailure.
    ChildProcess(const std::vector<std::string> &command, const std::optional<UnixAccount> &account,
                 const std::filesystem::path &log);
    ChildProcess(const ChildProcess &) = delete;
    ChildProcess &operator=(const ChildProcess &) = delete;
    /// Kills it when it still runs.
    ~ChildProcess();

    /// Its exit code once it has ended; 128 and the signal when a signal ended it.
    std::optional<int> exitCode();
    /// The same, after waiting for at most `patience`.
    std::optional<int> exitCodeWithin(std::chrono::milliseconds patience);
    void signal(int number);

private:
    pid_t m_pid = -1;
    std::optional<int> m_exitCode;
};

/// Whether `account` (or this process, when nothing) has `mode` access (R_OK, W_OK, X_OK) to a
/// path.
bool mayAccess(const std::optional<UnixAccount> &account, const std::filesystem::path &path,
               int mode);
