#include "service/RequestReader.h"

#include "service/AddressQuery.h"
#include "service/Gzip.h"
#include "service/HttpDate.h"

#include <algorithm>
#include <cctype>
#include <chrono>
#include <cstddef>
#include <cstdio>
#include <cstring>
#include <exception>
#include <memory>
#include <mutex>
#include <string>
#include <utility>

namespace {

using Clock = std::chrono::steady_clock;

// A thread answers one request at a time, from the first handler to the log line.
thread_local Clock::time_point requestStart;

/// A request that is there as a whole, in the shape of the library's connections, and what the
/// library writes in answer to it.
class WholeRequest : public httplib::Stream {
public:
    explicit WholeRequest(const RawRequest &request)
        : m_request(request)
    {
    }

    std::string output;

    bool is_readable() const override { return m_read < m_request.bytes.size(); }
    bool is_writable() const override { return true; }
    ssize_t read(char *target, std::size_t size) override
    {
        const std::size_t count = std::min(size, m_request.bytes.size() - m_read);
        std::memcpy(target, m_request.bytes.data() + m_read, count);
        m_read += count;
        return static_cast<ssize_t>(count);
    }
    ssize_t write(const char *bytes, std::size_t size) override
    {
        output.append(bytes, size);
        return static_cast<ssize_t>(size);
    }
    void get_remote_ip_and_port(std::string &ip, int &port) const override
    {
        ip = m_request.peer;
        port = 0;
    }
    void get_local_ip_and_port(std::string &ip, int &port) const override
    {
        ip = "127.0.0.1";
        port = 0;
    }
    socket_t socket() const override { return -1; }

private:
    const RawRequest &m_request;
    std::size_t m_read = 0;
};

/// The address as it may be logged, without the keys and tokens that can come in the query.
std::string withoutSecrets(std::string target)
{
    for (const char *secret : {"apikey=", "token=", "token_hash="}) {
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

void log(const std::string &request, int status, std::chrono::microseconds spent)
{
    static std::mutex mutex;
    const std::string line = withoutSecrets(request) + ' ' + std::to_string(status) + ' '
        + std::to_string(spent.count()) + '\n';
    const std::scoped_lock lock(mutex);
    std::fputs(line.c_str(), stdout);
    std::fflush(stdout);
}

void logLine(const httplib::Request &request, const httplib::Response &response)
{
    // A request that could not be read has not been routed, so nobody has noted its start.
    const auto start = std::exchange(requestStart, {});
    const auto spent = start == Clock::time_point() ? Clock::duration() : Clock::now() - start;
    log(request.method + ' ' + request.target, response.status,
        std::chrono::duration_cast<std::chrono::microseconds>(spent));
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
        // A header given twice is one list.
        const auto [known, isNew] = call.headers.emplace(lower, value);
        if (!isNew)
            known->second += ", " + value;
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

std::string reasonFor(int status)
{
    switch (status) {
    case 400:
        return "The request could not be read";
    case 408:
        return "The request took too long";
    case 413:
        return "The body is too large";
    case 414:
        return "The address is too long";
    case 417:
        return "The expectation is not understood";
    case 431:
        return "The headers are too large";
    case 501:
        return "The transfer encoding is not understood";
    default:
        return "The request was refused";
    }
}

} // namespace

std::string refusal(int status, const std::string &firstLine)
{
    log(firstLine, status, {});
    const Reply reply = gatewayError(status, reasonFor(status));
    return "HTTP/1.1 " + std::to_string(status) + ' ' + reasonFor(status)
        + "\r\nDate: " + httpDate() + "\r\nConnection: close\r\nContent-Type: " + reply.contentType
        + "\r\nContent-Length: " + std::to_string(reply.body.size()) + "\r\n\r\n" + reply.body;
}

RequestReader::RequestReader(Answer answer)
    : m_answer(std::move(answer))
{
    // The library cuts every answer short while it has no socket to listen on. It is never told to
    // listen on this one, or to close it.
    svr_sock_ = 0;
    set_keep_alive_timeout(60);
    set_keep_alive_max_count(1'000'000);
    route();
}

RawAnswer RequestReader::answer(const RawRequest &request)
{
    WholeRequest stream(request);
    bool isClosed = false;
    // The library's later releases want to be told who is asking.
    const auto process = [&](auto &whole) {
        if constexpr (requires { this->process_request(whole, false, isClosed, nullptr); })
            return this->process_request(whole, false, isClosed, nullptr);
        else
            return this->process_request(whole, request.peer, 0, "127.0.0.1", 0, false, isClosed,
                                         nullptr);
    };
    const bool isWell = process(stream);
    return {request.client, std::move(stream.output), isClosed || !isWell};
}

void RequestReader::route()
{
    const auto handler = [this](const httplib::Request &request, httplib::Response &response) {
        handle(request, response);
    };
    const std::string everything = ".*";
    Get(everything, handler);
    Post(everything, handler);
    Put(everything, handler);
    Patch(everything, handler);
    Delete(everything, handler);
    Options(everything, handler);
    set_pre_routing_handler([this](const httplib::Request &request, httplib::Response &response) {
        requestStart = Clock::now();
        // The library would wait for a body that nobody has announced.
        if (request.has_header("Content-Length"))
            return HandlerResponse::Unhandled;
        handle(request, response);
        return HandlerResponse::Handled;
    });
    // What the library refuses by itself it would leave without a word.
    set_error_handler([](const httplib::Request &, httplib::Response &response) {
        if (response.body.empty() && !response.content_provider_) {
            const Reply reply = gatewayError(response.status, reasonFor(response.status));
            response.set_content(reply.body, reply.contentType);
        }
    });
    set_post_routing_handler([](const httplib::Request &, httplib::Response &response) {
        response.set_header("Date", httpDate());
    });
    set_logger(logLine);
}

void RequestReader::handle(const httplib::Request &request, httplib::Response &response)
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
