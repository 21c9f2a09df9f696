#include "service/HttpServer.h"

#include <mutex>
#include <thread>
#include <utility>

namespace {

// As many as there are sessions with the database for them.
constexpr int workerCount = 16;

} // namespace

HttpServer::HttpServer(int port, RequestReader::Answer answer)
    : m_reader(std::move(answer))
    , m_loop(port)
{
    for (int count = 0; count < workerCount; ++count)
        m_workers.emplace_back([this] { work(); });
    m_loop.start([this](RawRequest request) { take(std::move(request)); }, refusal);
}

HttpServer::~HttpServer()
{
    m_loop.stop();
    {
        const std::scoped_lock lock(m_mutex);
        m_isEnding = true;
    }
    m_arrival.notify_all();
    for (std::thread &worker : m_workers)
        worker.join();
}

void HttpServer::take(RawRequest request)
{
    {
        const std::scoped_lock lock(m_mutex);
        m_waiting.push_back(std::move(request));
    }
    m_arrival.notify_one();
}

void HttpServer::work()
{
    for (;;) {
        std::unique_lock lock(m_mutex);
        m_arrival.wait(lock, [this] { return m_isEnding || !m_waiting.empty(); });
        if (m_waiting.empty())
            return;
        RawRequest request = std::move(m_waiting.front());
        m_waiting.pop_front();
        lock.unlock();
        m_loop.answer(m_reader.answer(request));
    }
}
