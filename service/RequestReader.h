#pragma once

#include "service/ClientLoop.h"
#include "service/Reply.h"

#include <functional>
#include <httplib.h>
#include <string>

/// Reads whole requests, has them answered and writes the answers, all by the HTTP library. Any
/// thread may call it.
class RequestReader : private httplib::Server {
public:
    using Answer = std::function<Reply(const Call &)>;

    /// `answer` is called on the threads that call answer().
    explicit RequestReader(Answer answer);

    RawAnswer answer(const RawRequest &request);

private:
    void route();
    void handle(const httplib::Request &request, httplib::Response &response);

    Answer m_answer;
};

/// The answer to a request that cannot be read, whose line it writes to the log, too.
std::string refusal(int status, const std::string &firstLine);
