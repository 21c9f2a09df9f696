#pragma once

#include "service/ClientLoop.h"
#include "service/Reply.h"
#include "service/RequestReader.h"

#include <condition_variable>
#include <deque>
#include <mutex>
#include <thread>
#include <vector>

/// Answers HTTP requests on 127.0.0.1 and writes one line a request to the standard output: verb,
/// address, status, microseconds. Clients are waited for on one thread; whole requests are answered
/// on others.
class HttpServer {
public:
    /// `answer` is called on any thread, several times at once. Throws StartFailure when the port
    /// (0 for any) is taken. Requests are answered from the end of the constructor on.
    HttpServer(int port, RequestReader::Answer answer);
    /// Lets the requests under way end and hangs up.
    ~HttpServer();
    HttpServer(const HttpServer &) = delete;
    HttpServer &operator=(const HttpServer &) = delete;

    int port() const { return m_loop.port(); }

private:
    void take(RawRequest request);
    void work();

    RequestReader m_reader;
    ClientLoop m_loop;
    std::mutex m_mutex;
    std::condition_variable m_arrival;
    std::deque<RawRequest> m_waiting;
    bool m_isEnding = false;
    std::vector<std::thread> m_workers;
};
