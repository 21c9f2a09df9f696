#include "service/Cluster.h"

#include "service/Files.h"
#include "service/OrphanPostmaster.h"
#include "service/StartFailure.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <libpq-fe.h>
#include <optional>
#include <string>
#include <string_view>
#include <sys/stat.h>
#include <sys/un.h>
#include <thread>
#include <unistd.h>
#include <vector>

namespace fs = std::filesystem;
using namespace std::chrono_literals;

namespace {

fs::path programFolder()
{
    std::string told;
    if (FILE *answer = popen("pg_config --bindir 2>/dev/null", "r")) {
        std::array<char, 512> buffer{};
        if (fgets(buffer.data(), buffer.size(), answer))
            told = buffer.data();
        pclose(answer);
    }
    while (told.ends_with('\n'))
        told.pop_back();
    const auto hasServer = [](const fs::path &folder) {
        return access((folder / "initdb").c_str(), X_OK) == 0;
    };
    if (!told.empty() && hasServer(told))
        return told;
    // As Debian has it, one folder a version; the newest.
    fs::path found;
    int newest = 14;
    std::error_code none;
    for (const fs::directory_entry &entry : fs::directory_iterator("/usr/lib/postgresql", none)) {
        const int version = std::atoi(entry.path().filename().c_str());
        if (version > newest && hasServer(entry.path() / "bin")) {
            newest = version;
            found = entry.path() / "bin";
        }
    }
    if (!found.empty())
        return found;
    throw StartFailure("PostgreSQL's server programs (initdb, postgres) are not installed");
}

void giveTo(const std::optional<UnixAccount> &account, const fs::path &path)
{
    if (account && chown(path.c_str(), account->user, account->group) != 0)
        throw StartFailure("cannot give " + path.string() + " to the database's user");
}

std::string lastLinesOf(const fs::path &log)
{
    const std::string text = readFile(log).value_or("");
    return text.substr(text.size() > 2000 ? text.size() - 2000 : 0);
}

/// What a killed server leaves running (its sessions) ends by itself a moment later; until then a
/// new server refuses to start.
bool waitsForPredecessor(const std::string &said)
{
    return said.find("pre-existing shared memory block") != std::string::npos
        || said.find("lock file \"") != std::string::npos;
}

/// The complaint after which PostgreSQL gave up, or else the first of what it said.
std::string reasonIn(const std::string &said)
{
    constexpr std::string_view mark = "FATAL:";
    const auto fatal = std::min(said.find(mark), said.find("PANIC:"));
    const auto start =
        said.find_first_not_of(" \n", fatal == std::string::npos ? 0 : fatal + mark.size());
    return start == std::string::npos ? "it does not say why"
                                      : said.substr(start, said.find('\n', start) - start);
}

bool answers(const std::string &connection)
{
    return PQping(connection.c_str()) == PQPING_OK;
}

} // namespace

Cluster::Cluster(const DataFolder &folder, const std::optional<UnixAccount> &account)
    : m_folder(folder)
    , m_account(account)
    , m_cluster(folder.path("cluster"))
    , m_log(folder.path("postgres.log"))
    , m_programs(programFolder())
{
    if (fs::exists(m_folder.path("cluster")))
        stopOrphanPostmaster(m_cluster);
    else
        initialise();
    prepareSocketFolder();
    startServer();
}

Cluster::~Cluster()
{
    // Fast: sessions end, what they committed is on disk. Immediate only when that hangs.
    m_server->signal(SIGINT);
    if (!m_server->exitCodeWithin(20s)) {
        m_server->signal(SIGQUIT);
        m_server->exitCodeWithin(5s);
    }
    if (m_socketFolderIsTemporary) {
        std::error_code ignored;
        fs::remove_all(m_socketFolder, ignored);
    }
}

std::string Cluster::connectionText(const std::string &role) const
{
    return "host='" + m_socketFolder.string() + "' dbname=postgres user=" + role
        + " client_encoding=UTF8 application_name=amorvelle-service options='-c timezone=UTC'";
}

void Cluster::initialise()
{
    // Made under another name, so that a run killed half-way leaves no half-made cluster.
    const fs::path draft = m_folder.path("cluster.new");
    std::error_code ignored;
    fs::remove_all(draft, ignored);
    if (mkdir(draft.c_str(), 0700) != 0)
        throw StartFailure("cannot make " + draft.string());
    giveTo(m_account, draft);
    ChildProcess initdb({(m_programs / "initdb").string(), "-D", draft.string(), "-U", "postgres",
                         "-E", "UTF8", "--locale=C.UTF-8", "--locale-provider=icu",
                         "--icu-locale=en_US", "--auth=trust", "--no-sync", "--no-instructions"},
                        m_account, m_log);
    if (initdb.exitCodeWithin(120s) != 0)
        throw StartFailure("the database could not be made:\n" + lastLinesOf(m_log));
    fs::rename(draft, m_cluster);
}

void Cluster::prepareSocketFolder()
{
    m_socketFolder = m_folder.path("socket");
    const std::string socket = (m_socketFolder / ".s.PGSQL.5432").string();
    // PostgreSQL and libpq read a list of folders where one is wanted, so no comma either.
    if (socket.size() < sizeof(sockaddr_un::sun_path)
        && socket.find_first_of("',\"\\") == std::string::npos) {
        if (mkdir(m_socketFolder.c_str(), 0700) != 0 && errno != EEXIST)
            throw StartFailure("cannot make " + m_socketFolder.string());
    } else {
        std::string name = "/tmp/amorvelle-XXXXXX";
        if (!mkdtemp(name.data()))
            throw StartFailure("cannot make a folder in /tmp for the database's socket");
        m_socketFolder = name;
        m_socketFolderIsTemporary = true;
    }
    giveTo(m_account, m_socketFolder);
}

void Cluster::startServer()
{
    const std::vector<std::string> command{(m_programs / "postgres").string(),
                                           "-D",
                                           m_cluster.string(),
                                           "-c",
                                           "listen_addresses=",
                                           "-c",
                                           "unix_socket_directories=" + m_socketFolder.string(),
                                           "-c",
                                           "unix_socket_permissions=0700",
                                           "-c",
                                           "max_connections=60",
                                           "-c",
                                           "shared_buffers=32MB",
                                           "-c",
                                           "jit=off",
                                           "-c",
                                           "log_timezone=UTC"};
    std::error_code ignored;
    const auto logStart = fs::exists(m_log, ignored) ? fs::file_size(m_log, ignored) : 0;
    const auto deadline = std::chrono::steady_clock::now() + 30s;
    m_server = std::make_unique<ChildProcess>(command, m_account, m_log);
    while (!answers(connectionText("postgres"))) {
        if (std::chrono::steady_clock::now() > deadline)
            throw StartFailure("the database does not answer:\n" + lastLinesOf(m_log));
        if (m_server->exitCode()) {
            const std::string said = readFile(m_log).value_or("").substr(logStart);
            if (!waitsForPredecessor(said)) {
                throw StartFailure("the database ended at once (" + reasonIn(said)
                                   + "); to begin anew, without what was entered, remove "
                                   + m_cluster.string());
            }
            std::this_thread::sleep_for(250ms);
            m_server = std::make_unique<ChildProcess>(command, m_account, m_log);
        }
        std::this_thread::sleep_for(10ms);
    }
}
