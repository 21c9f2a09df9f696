#include "service/ChildProcess.h"

#include "service/StartFailure.h"

#include <cerrno>
#include <csignal>
#include <cstring>
#include <fcntl.h>
#include <grp.h>
#include <pwd.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

namespace {

bool become(const UnixAccount &account)
{
    return setgroups(1, &account.group) == 0 && setgid(account.group) == 0
        && setuid(account.user) == 0;
}

// Runs between fork and exec, where only async-signal-safe calls are allowed.
[[noreturn]] void runInChild(char *const *arguments, char *const *environment,
                             const std::optional<UnixAccount> &account, int log, pid_t parent)
{
    setsid();
    sigset_t none;
    sigemptyset(&none);
    sigprocmask(SIG_SETMASK, &none, nullptr);
    ::signal(SIGPIPE, SIG_DFL);
    const int nothing = open("/dev/null", O_RDONLY);
    dup2(nothing, 0);
    dup2(log, 1);
    dup2(log, 2);
    close_range(3, ~0U, 0);
    if (account && !become(*account))
        _exit(126);
    // After the change of user, which would clear it. SIGINT is PostgreSQL's fast shutdown.
    prctl(PR_SET_PDEATHSIG, SIGINT);
    if (getppid() != parent || chdir("/") != 0)
        _exit(125);
    execve(arguments[0], arguments, environment);
    _exit(127);
}

} // namespace

std::optional<UnixAccount> databaseAccount()
{
    if (geteuid() != 0)
        return std::nullopt;
    const passwd *entry = getpwnam("postgres");
    if (!entry)
        throw StartFailure("run as root, the database needs a user `postgres` to run as");
    return UnixAccount{entry->pw_uid, entry->pw_gid};
}

ChildProcess::ChildProcess(const std::vector<std::string> &command,
                           const std::optional<UnixAccount> &account,
                           const std::filesystem::path &log)
{
    std::vector<char *> arguments;
    arguments.reserve(command.size() + 1);
    for (const std::string &argument : command)
        arguments.push_back(const_cast<char *>(argument.c_str()));
    arguments.push_back(nullptr);
    std::string path = "PATH=/usr/bin:/bin", locale = "LC_ALL=C", zone = "TZ=UTC";
    char *const environment[] = {path.data(), locale.data(), zone.data(), nullptr};
    const int output = open(log.c_str(), O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0600);
    if (output < 0)
        throw StartFailure("cannot write " + log.string() + ": " + std::strerror(errno));
    const pid_t self = getpid();
    m_pid = fork();
    if (m_pid == 0)
        runInChild(arguments.data(), environment, account, output, self);
    close(output);
    if (m_pid < 0)
        throw StartFailure("cannot start " + command.front() + ": " + std::strerror(errno));
}

ChildProcess::~ChildProcess()
{
    if (!exitCode()) {
        signal(SIGKILL);
        waitpid(m_pid, nullptr, 0);
    }
}

std::optional<int> ChildProcess::exitCode()
{
    int status = 0;
    if (!m_exitCode && waitpid(m_pid, &status, WNOHANG) == m_pid)
        m_exitCode = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
    return m_exitCode;
}

std::optional<int> ChildProcess::exitCodeWithin(std::chrono::milliseconds patience)
{
    const auto deadline = std::chrono::steady_clock::now() + patience;
    while (!exitCode() && std::chrono::steady_clock::now() < deadline)
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    return m_exitCode;
}

void ChildProcess::signal(int number)
{
    if (!exitCode())
        kill(m_pid, number);
}

bool mayAccess(const std::optional<UnixAccount> &account, const std::filesystem::path &path,
               int mode)
{
    if (!account)
        return access(path.c_str(), mode) == 0;
    const pid_t asker = fork();
    if (asker == 0)
        _exit(become(*account) && access(path.c_str(), mode) == 0 ? 0 : 1);
    int status = 1;
    return asker > 0 && waitpid(asker, &status, 0) == asker && WIFEXITED(status)
        && WEXITSTATUS(status) == 0;
}
