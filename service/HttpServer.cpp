#include "service/HttpServer.h"

#include "service/AddressQuery.h"
#include "service/Gzip.h"
#include "service/StartFailure.h"

#include <algorithm>
#include <cctype>
#include <charconv>
#include <cstdio>
#include <filesystem>
#include <memory>
#include <mutex>
#include <netinet/in.h>
#include <sys/socket.h>
#include <utility>

namespace {

using Clock = std::chrono::steady_clock;

// A pool thread answers one request at a time, from the first handler to the log line.
thread_local Clock::time_point requestStart;

constexpr int threadCount = 48;
constexpr std::size_t largestBody = 10U << 20U;

/// The address as it may be logged, without the keys and tokens that can come in the query.
std::string withoutSecrets(std::string target)
{
    for (const char *secret : {"apikey=", "token="}) {
        for (const char *before : {"?", "&"}) {
            const std::string mark = std::string(before) + secret;
            if (const auto at = target.find(mark); at != std::string::npos) {
                const auto start = at + mark.size();
                const auto end = std::min(target.find('&', start), target.size());
                target.replace(start, end - start, "...");
            }
        }
    }
    std::replace_if(
        target.begin(), target.end(),
        [](char letter) { return std::iscntrl(static_cast<unsigned char>(letter)) != 0; }, '?');
    return target;
}

void logLine(const httplib::Request &request, const httplib::Response &response)
{
    static std::mutex mutex;
    // A request that could not be read has not been routed, so nobody has noted its start.
    const auto start = std::exchange(requestStart, {});
    const auto spent = start == Clock::time_point() ? Clock::duration() : Clock::now() - start;
    const auto microseconds = std::chrono::duration_cast<std::chrono::microseconds>(spent);
    const std::string line = request.method + ' ' + withoutSecrets(request.target) + ' '
        + std::to_string(response.status) + ' ' + std::to_string(microseconds.count()) + '\n';
    const std::scoped_lock lock(mutex);
    std::fputs(line.c_str(), stdout);
    std::fflush(stdout);
}

Call callFrom(const httplib::Request &request)
{
    Call call{request.method, request.path,       queryOf(request.target), {},
              request.body,   request.remote_addr};
    for (const auto &[name, value] : request.headers) {
        std::string lower = name;
        std::transform(lower.begin(), lower.end(), lower.begin(), [](unsigned char letter) {
            return static_cast<char>(std::tolower(letter));
        });
        call.headers.emplace(lower, value);
    }
    return call;
}

/// Hands over bytes that stay as they are: a body given whole would be packed by the library, and
/// one that is packed already once more.
void handOver(std::string bytes, const std::string &type, httplib::Response &response)
{
    const auto kept = std::make_shared<const std::string>(std::move(bytes));
    response.set_content_provider(
        kept->size(), type, [kept](std::size_t from, std::size_t length, httplib::DataSink &sink) {
            return sink.write(kept->data() + from, length);
        });
}

void give(const Reply &reply, const httplib::Request &request, httplib::Response &response)
{
    response.status = reply.status;
    for (const auto &[name, value] : reply.headers)
        response.set_header(name, value);
    if (reply.body.empty())
        return;
    constexpr std::size_t worthPacking = 860;
    if (reply.body.size() >= worthPacking
        && acceptsGzip(request.get_header_value("Accept-Encoding"))) {
        response.set_header("Content-Encoding", "gzip");
        response.set_header("Vary", "Accept-Encoding");
        handOver(gzipped(reply.body), reply.contentType, response);
    } else {
        handOver(reply.body, reply.contentType, response);
    }
}

} // namespace

HttpServer::HttpServer(int port, Answer answer)
    : m_answer(std::move(answer))
{
    m_server.new_task_queue = [] { return new httplib::ThreadPool(threadCount); };
    m_server.set_tcp_nodelay(true);
    m_server.set_keep_alive_max_count(1'000'000);
    m_server.set_payload_max_length(largestBody);
    // In place of the library's own, which lets two servers share a port unknowingly.
    m_server.set_socket_options([this](socket_t socket) {
        const int yes = 1;
        setsockopt(socket, SOL_SOCKET, SO_REUSEADDR, &yes, sizeof yes);
        m_listener = socket;
    });
    route();

    const char *loopback = "127.0.0.1";
    m_port = port == 0                          ? m_server.bind_to_any_port(loopback)
        : m_server.bind_to_port(loopback, port) ? port
                                                : -1;
    if (m_port <= 0)
        throw StartFailure("port " + std::to_string(port) + " of 127.0.0.1 is taken");
    // The library's own queue of five is too short for a burst of clients.
    listen(m_listener, 128);
    m_thread = std::thread([this] { m_server.listen_after_bind(); });
    while (!m_server.is_running())
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
}

HttpServer::~HttpServer()
{
    m_server.stop();
    hangUpIdleConnections();
    m_thread.join();
}

void HttpServer::route()
{
    const auto handler = [this](const httplib::Request &request, httplib::Response &response) {
        handle(request, response);
    };
    const std::string everything = ".*";
    m_server.Get(everything, handler);
    m_server.Post(everything, handler);
    m_server.Put(everything, handler);
    m_server.Patch(everything, handler);
    m_server.Delete(everything, handler);
    m_server.Options(everything, handler);
    m_server.set_pre_routing_handler(
        [this](const httplib::Request &request, httplib::Response &response) {
            requestStart = Clock::now();
            // The library would wait for a body until the client hangs up.
            if (!request.has_header("Content-Length") && !request.has_header("Transfer-Encoding")) {
                handle(request, response);
                return httplib::Server::HandlerResponse::Handled;
            }
            return httplib::Server::HandlerResponse::Unhandled;
        });
    m_server.set_logger(logLine);
}

void HttpServer::handle(const httplib::Request &request, httplib::Response &response)
{
    try {
        give(m_answer(callFrom(request)), request, response);
    } catch (const Reply &reply) {
        give(reply, request, response);
    } catch (const std::exception &error) {
        std::fprintf(stderr, "amorvelle-service: %s\n", error.what());
        give(gatewayError(500, "An unexpected error occurred"), request, response);
    }
}

// Otherwise each thread would wait for its client's next request until its patience ends. Only
// reading is closed: an answer under way still leaves.
void HttpServer::hangUpIdleConnections() const
{
    std::error_code error;
    for (const auto &entry : std::filesystem::directory_iterator("/proc/self/fd", error)) {
        const std::string name = entry.path().filename().string();
        int descriptor = -1;
        std::from_chars(name.data(), name.data() + name.size(), descriptor);
        sockaddr_in local{};
        socklen_t size = sizeof local;
        if (getsockname(descriptor, reinterpret_cast<sockaddr *>(&local), &size) == 0
            && local.sin_family == AF_INET && ntohs(local.sin_port) == m_port) {
            shutdown(descriptor, SHUT_RD);
        }
    }
}
