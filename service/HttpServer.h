#pragma once

#include "service/Reply.h"

#include <functional>
#include <httplib.h>
#include <thread>

/// Answers HTTP requests on 127.0.0.1, each on a thread of its own, and writes one line a request
/// to the standard output: verb, address, status, microseconds.
class HttpServer {
public:
    using Answer = std::function<Reply(const Call &)>;

    /// `answer` is called on any thread, several times at once. Throws StartFailure when the port
    /// (0 for any) is taken. Requests are answered from the end of the constructor on.
    HttpServer(int port, Answer answer);
    /// Lets the requests under way end and hangs up.
    ~HttpServer();

    int port() const { return m_port; }

private:
    void route();
    void handle(const httplib::Request &request, httplib::Response &response);
    void hangUpIdleConnections() const;

    Answer m_answer;
    httplib::Server m_server;
    int m_port = 0;
    int m_listener = -1;
    std::thread m_thread;
};
