#pragma once

#include "service/RequestFrame.h"

#include <atomic>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

/// A whole request, and whom its answer goes to.
struct RawRequest {
    std::uint64_t client;
    std::string bytes;
    std::string peer; ///< the client's address
};

/// What goes back, byte for byte.
struct RawAnswer {
    std::uint64_t client;
    std::string bytes;
    bool hangUp = false;
};

/// The connections of all clients on 127.0.0.1, on one thread that never waits for any of them: a
/// client that sends or reads slowly, or not at all, keeps nobody else waiting.
class ClientLoop {
public:
    using Take = std::function<void(RawRequest)>;
    /// Writes the answer to a request that cannot be read, and its line in the log.
    using Refuse = std::function<std::string(int status, const std::string &firstLine)>;

    /// Listens from here on; throws StartFailure when the port (0 for any) is taken.
    explicit ClientLoop(int port);
    ~ClientLoop();
    ClientLoop(const ClientLoop &) = delete;
    ClientLoop &operator=(const ClientLoop &) = delete;

    int port() const { return m_port; }
    /// `take` and `refuse` are called on the loop's thread and must not wait.
    void start(Take take, Refuse refuse);
    /// Any thread may call it.
    void answer(RawAnswer answer);
    /// Takes no request any more, lets those under way be answered, hangs up and returns.
    void stop();

private:
    using Clock = std::chrono::steady_clock;
    enum class Phase { Reading, Answering, Writing, Closing };
    struct Client {
        int socket;
        std::string peer;
        RequestFrame frame;
        std::string output;
        std::size_t written = 0;
        bool hangUp = false;
        Phase phase = Phase::Reading;
        Clock::time_point deadline;
    };
    using Clients = std::map<std::uint64_t, Client>;

    void run();
    int waitTime() const;
    void acceptAll();
    void makeRoom();
    void collectAnswers();
    bool serve(std::uint64_t id, Client &client, short events);
    bool read(std::uint64_t id, Client &client);
    bool write(std::uint64_t id, Client &client);
    bool proceed(std::uint64_t id, Client &client);
    bool timeOut(std::uint64_t id, Client &client);
    bool refuse(std::uint64_t id, Client &client, int status);
    void wake() const;

    int m_listener = -1;
    int m_wake = -1;
    int m_port = 0;
    Take m_take;
    Refuse m_refuse;
    Clients m_clients; ///< the loop's thread only, as the next one
    std::uint64_t m_lastClient = 0;
    std::mutex m_mutex;
    std::vector<RawAnswer> m_answers;
    std::atomic<bool> m_isStopping = false;
    std::thread m_thread;
};
