#include "service/ConnectionPool.h"

#include <cstddef>
#include <memory>
#include <string>
#include <utility>

ConnectionPool::Lease::Lease(ConnectionPool &pool, std::unique_ptr<Connection> connection)
    : m_pool(&pool)
    , m_connection(std::move(connection))
{
}

ConnectionPool::Lease::~Lease()
{
    if (m_connection)
        m_pool->giveBack(std::move(m_connection));
}

ConnectionPool::ConnectionPool(std::string connectionText, std::size_t size)
    : m_connectionText(std::move(connectionText))
    , m_free(size)
{
}

ConnectionPool::Lease ConnectionPool::take()
{
    std::unique_ptr<Connection> connection;
    {
        std::unique_lock lock(m_mutex);
        m_returned.wait(lock, [this] { return m_free > 0; });
        --m_free;
        if (!m_idle.empty()) {
            connection = std::move(m_idle.back());
            m_idle.pop_back();
        }
    }
    if (!connection) {
        try {
            connection = std::make_unique<Connection>(m_connectionText);
        } catch (...) {
            giveBack(nullptr);
            throw;
        }
    }
    return Lease(*this, std::move(connection));
}

void ConnectionPool::giveBack(std::unique_ptr<Connection> connection)
{
    // One that broke, or was left inside a transaction, is replaced by a new one when needed.
    const bool isUseful = connection && connection->isIdle();
    {
        const std::scoped_lock lock(m_mutex);
        ++m_free;
        if (isUseful)
            m_idle.push_back(std::move(connection));
    }
    m_returned.notify_one();
}
