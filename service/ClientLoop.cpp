#include "service/ClientLoop.h"

#include "service/StartFailure.h"

#include <algorithm>
#include <arpa/inet.h>
#include <cerrno>
#include <csignal>
#include <cstddef>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <optional>
#include <poll.h>
#include <string_view>
#include <sys/eventfd.h>
#include <sys/socket.h>
#include <unistd.h>
#include <utility>

using namespace std::chrono_literals;

namespace {

constexpr auto patienceForRequest = 20s; // from its first byte to its last
constexpr auto patienceForNextRequest = 60s;
constexpr auto patienceForReader = 30s; // without a byte taken
constexpr auto patienceForGoodbye = 2s;
constexpr auto patienceForStop = 10s;
// Well below the number of files that a process may open by default.
constexpr std::size_t mostClients = 800;

} // namespace

ClientLoop::ClientLoop(int port)
{
    // A client that is gone is told by the result of a call.
    std::signal(SIGPIPE, SIG_IGN);
    m_listener = socket(AF_INET, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0);
    const int yes = 1;
    setsockopt(m_listener, SOL_SOCKET, SO_REUSEADDR, &yes, sizeof yes);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    address.sin_port = htons(static_cast<std::uint16_t>(port));
    socklen_t size = sizeof address;
    auto *plain = reinterpret_cast<sockaddr *>(&address);
    m_wake = eventfd(0, EFD_NONBLOCK | EFD_CLOEXEC);
    if (m_listener < 0 || m_wake < 0 || bind(m_listener, plain, size) != 0
        || listen(m_listener, 128) != 0 || getsockname(m_listener, plain, &size) != 0) {
        close(m_listener);
        close(m_wake);
        throw StartFailure("port " + std::to_string(port) + " of 127.0.0.1 is taken");
    }
    m_port = ntohs(address.sin_port);
}

ClientLoop::~ClientLoop()
{
    stop();
    close(m_listener);
    close(m_wake);
}

void ClientLoop::start(Take take, Refuse refuse)
{
    m_take = std::move(take);
    m_refuse = std::move(refuse);
    m_thread = std::thread([this] { run(); });
}

void ClientLoop::stop()
{
    m_isStopping = true;
    wake();
    if (m_thread.joinable())
        m_thread.join();
}

void ClientLoop::answer(RawAnswer answer)
{
    {
        const std::scoped_lock lock(m_mutex);
        m_answers.push_back(std::move(answer));
    }
    wake();
}

void ClientLoop::wake() const
{
    const std::uint64_t one = 1;
    [[maybe_unused]] const auto written = ::write(m_wake, &one, sizeof one);
}

void ClientLoop::run()
{
    std::optional<Clock::time_point> end;
    for (;;) {
        if (m_isStopping) {
            end = end.value_or(Clock::now() + patienceForStop);
            std::erase_if(m_clients, [&](auto &entry) {
                const Phase phase = entry.second.phase;
                const bool isIdle = phase == Phase::Reading || phase == Phase::Closing;
                if (isIdle || Clock::now() > *end)
                    close(entry.second.socket);
                return isIdle || Clock::now() > *end;
            });
            if (m_clients.empty())
                return;
        }
        std::vector<pollfd> watched{{m_wake, POLLIN, 0},
                                    {m_isStopping ? -1 : m_listener, POLLIN, 0}};
        std::vector<std::uint64_t> ids;
        for (const auto &[id, client] : m_clients) {
            short events = POLLIN;
            if (client.phase == Phase::Writing)
                events = POLLOUT;
            else if (client.phase == Phase::Answering)
                events = 0;
            watched.push_back({events == 0 ? -1 : client.socket, events, 0});
            ids.push_back(id);
        }
        poll(watched.data(), watched.size(), waitTime());
        std::uint64_t wakes = 0;
        [[maybe_unused]] const auto taken = ::read(m_wake, &wakes, sizeof wakes);
        for (std::size_t at = 0; at < ids.size(); ++at) {
            Client &client = m_clients.at(ids[at]);
            if (!serve(ids[at], client, watched[at + 2].revents)) {
                close(client.socket);
                m_clients.erase(ids[at]);
            }
        }
        collectAnswers();
        if (watched[1].revents != 0)
            acceptAll();
    }
}

int ClientLoop::waitTime() const
{
    auto soonest = Clock::now() + 1s;
    for (const auto &[id, client] : m_clients) {
        if (client.phase != Phase::Answering)
            soonest = std::min(soonest, client.deadline);
    }
    const auto rest = std::chrono::ceil<std::chrono::milliseconds>(soonest - Clock::now());
    return static_cast<int>(std::max<std::int64_t>(rest.count(), 0));
}

void ClientLoop::acceptAll()
{
    for (;;) {
        sockaddr_in address{};
        socklen_t size = sizeof address;
        const int socket = accept4(m_listener, reinterpret_cast<sockaddr *>(&address), &size,
                                   SOCK_NONBLOCK | SOCK_CLOEXEC);
        if (socket < 0)
            return;
        makeRoom();
        const int yes = 1;
        setsockopt(socket, IPPROTO_TCP, TCP_NODELAY, &yes, sizeof yes);
        char peer[INET_ADDRSTRLEN] = {};
        inet_ntop(AF_INET, &address.sin_addr, peer, sizeof peer);
        Client client{};
        client.socket = socket;
        client.peer = peer;
        client.deadline = Clock::now() + patienceForNextRequest;
        m_clients.emplace(++m_lastClient, std::move(client));
    }
}

/// Among too many clients, who has not managed to ask anything for the longest time gives way.
void ClientLoop::makeRoom()
{
    if (m_clients.size() < mostClients)
        return;
    const auto idle = std::find_if(m_clients.begin(), m_clients.end(), [](const auto &entry) {
        return entry.second.phase == Phase::Reading || entry.second.phase == Phase::Closing;
    });
    const auto leaving = idle == m_clients.end() ? m_clients.begin() : idle;
    close(leaving->second.socket);
    m_clients.erase(leaving);
}

void ClientLoop::collectAnswers()
{
    std::vector<RawAnswer> answers;
    {
        const std::scoped_lock lock(m_mutex);
        answers.swap(m_answers);
    }
    for (RawAnswer &answer : answers) {
        const auto found = m_clients.find(answer.client);
        if (found == m_clients.end())
            continue;
        Client &client = found->second;
        client.output = std::move(answer.bytes);
        client.hangUp = answer.hangUp;
        client.phase = Phase::Writing;
        client.deadline = Clock::now() + patienceForReader;
        if (!write(found->first, client)) {
            close(client.socket);
            m_clients.erase(found);
        }
    }
}

/// False when the connection has ended.
bool ClientLoop::serve(std::uint64_t id, Client &client, short events)
{
    if (client.phase == Phase::Answering)
        return true;
    if (events != 0)
        return client.phase == Phase::Writing ? write(id, client) : read(id, client);
    return Clock::now() < client.deadline || timeOut(id, client);
}

bool ClientLoop::read(std::uint64_t id, Client &client)
{
    char bytes[64U << 10U];
    const auto count = recv(client.socket, bytes, sizeof bytes, 0);
    if (count < 0)
        return errno == EAGAIN || errno == EINTR;
    if (count == 0)
        return false;
    if (client.phase == Phase::Closing)
        return true;
    if (client.frame.state() == RequestFrame::State::Empty)
        client.deadline = Clock::now() + patienceForRequest;
    client.frame.append({bytes, static_cast<std::size_t>(count)});
    return proceed(id, client);
}

bool ClientLoop::proceed(std::uint64_t id, Client &client)
{
    switch (client.frame.state()) {
    case RequestFrame::State::Empty:
        client.deadline = Clock::now() + patienceForNextRequest;
        return true;
    case RequestFrame::State::Incomplete:
        if (client.frame.takeWaitForContinue()) {
            constexpr std::string_view goOn = "HTTP/1.1 100 Continue\r\n\r\n";
            return send(client.socket, goOn.data(), goOn.size(), 0)
                == static_cast<ssize_t>(goOn.size());
        }
        return true;
    case RequestFrame::State::Complete:
        client.phase = Phase::Answering;
        m_take({id, client.frame.take(), client.peer});
        return true;
    case RequestFrame::State::Refused:
        return refuse(id, client, client.frame.refusal());
    }
    return false;
}

bool ClientLoop::write(std::uint64_t id, Client &client)
{
    while (client.written < client.output.size()) {
        const auto count = send(client.socket, client.output.data() + client.written,
                                client.output.size() - client.written, 0);
        if (count < 0)
            return errno == EAGAIN || errno == EINTR;
        client.written += static_cast<std::size_t>(count);
        client.deadline = Clock::now() + patienceForReader;
    }
    client.output.clear();
    client.written = 0;
    if (client.hangUp) {
        // Closed at once, what the client still sends would make the system drop the answer.
        shutdown(client.socket, SHUT_WR);
        client.phase = Phase::Closing;
        client.deadline = Clock::now() + patienceForGoodbye;
        return true;
    }
    client.phase = Phase::Reading;
    client.deadline = Clock::now() + patienceForRequest;
    return proceed(id, client);
}

bool ClientLoop::timeOut(std::uint64_t id, Client &client)
{
    const bool hasBegun = client.frame.state() == RequestFrame::State::Incomplete;
    return client.phase == Phase::Reading && hasBegun && refuse(id, client, 408);
}

bool ClientLoop::refuse(std::uint64_t id, Client &client, int status)
{
    client.output = m_refuse(status, client.frame.firstLine());
    client.hangUp = true;
    client.phase = Phase::Writing;
    client.deadline = Clock::now() + patienceForReader;
    return write(id, client);
}
