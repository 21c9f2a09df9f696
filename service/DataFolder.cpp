#include "service/DataFolder.h"

#include "service/StartFailure.h"

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace fs = std::filesystem;

namespace {

void requireWayTo(const fs::path &folder, const UnixAccount &account)
{
    fs::path way;
    for (const fs::path &step : folder) {
        way /= step;
        if (!mayAccess(account, way, X_OK)) {
            throw StartFailure("run as root, the database runs as the user `postgres`, who may not "
                               "enter "
                               + way.string()
                               + "; choose another data folder or let others pass "
                                 "(chmod o+x)");
        }
    }
}

} // namespace

DataFolder::DataFolder(const fs::path &folder, const std::optional<UnixAccount> &account)
{
    std::error_code error;
    fs::create_directories(folder, error);
    m_folder = fs::canonical(folder, error);
    if (error || !fs::is_directory(m_folder))
        throw StartFailure("cannot make the data folder " + folder.string());
    if (account) {
        fs::permissions(m_folder, fs::perms::others_exec, fs::perm_options::add, error);
        requireWayTo(m_folder, *account);
    }
    const fs::path lock = path("service.lock");
    m_lock = open(lock.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600);
    if (m_lock < 0)
        throw StartFailure("cannot write " + lock.string() + ": " + std::strerror(errno));
    if (flock(m_lock, LOCK_EX | LOCK_NB) != 0) {
        close(m_lock);
        throw StartFailure("another amorvelle-service uses " + m_folder.string());
    }
}

DataFolder::~DataFolder()
{
    close(m_lock);
}
