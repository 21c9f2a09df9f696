#include "service/OrphanPostmaster.h"

#include "service/Files.h"
#include "service/StartFailure.h"

#include <chrono>
#include <csignal>
#include <sstream>
#include <string>
#include <thread>
#include <utility>

namespace fs = std::filesystem;

namespace {

bool servesCluster(pid_t process, const fs::path &cluster)
{
    std::error_code error;
    const fs::path self = fs::path("/proc") / std::to_string(process);
    const fs::path program = fs::read_symlink(self / "exe", error);
    const fs::path folder = fs::read_symlink(self / "cwd", error);
    return !error && program.filename() == "postgres" && folder == cluster;
}

bool endsWithin(pid_t process, const fs::path &cluster, std::chrono::milliseconds patience)
{
    const auto deadline = std::chrono::steady_clock::now() + patience;
    while (servesCluster(process, cluster)) {
        if (std::chrono::steady_clock::now() > deadline)
            return false;
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    return true;
}

} // namespace

void stopOrphanPostmaster(const fs::path &cluster)
{
    using namespace std::chrono_literals;
    const fs::path note = cluster / "postmaster.pid";
    const auto content = readFile(note);
    if (!content)
        return;
    // Its lines: process, cluster, start, port, socket folder, ...
    std::istringstream lines(*content);
    pid_t process = 0;
    lines >> process;
    std::string socketFolder;
    for (int line = 1; line <= 5; ++line)
        std::getline(lines, socketFolder);
    if (process > 1 && servesCluster(process, cluster)) {
        for (const auto &[number, patience] :
             {std::pair(SIGINT, 20'000ms), std::pair(SIGQUIT, 10'000ms)}) {
            kill(process, number);
            if (endsWithin(process, cluster, patience))
                break;
        }
        if (servesCluster(process, cluster)) {
            throw StartFailure("process " + std::to_string(process)
                               + ", left by an earlier run, still serves " + cluster.string());
        }
    }
    std::error_code ignored;
    // Its number may belong to a stranger by now, for whom the server would give way.
    fs::remove(note, ignored);
    if (socketFolder.starts_with("/tmp/amorvelle-"))
        fs::remove_all(socketFolder, ignored);
}
