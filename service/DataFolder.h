#pragma once

#include "service/ChildProcess.h"

#include <filesystem>
#include <optional>

/// The folder that holds one service's database and keys, taken for as long as this object lives: a
/// second service on the same folder is refused.
class DataFolder {
public:
    /// Makes the folder when it is missing and lets the database's user pass through it. Throws
    /// StartFailure, naming the folder on the way that this user cannot enter.
    DataFolder(const std::filesystem::path &folder, const std::optional<UnixAccount> &account);
    DataFolder(const DataFolder &) = delete;
    DataFolder &operator=(const DataFolder &) = delete;
    ~DataFolder();

    std::filesystem::path path(const char *name) const { return m_folder / name; }

private:
    std::filesystem::path m_folder;
    int m_lock = -1;
};
