#pragma once

#include "service/Database.h"

#include <condition_variable>
#include <cstddef>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

/// The sessions of one database role, shared by the threads that answer requests. Any thread may
/// call it.
class ConnectionPool {
public:
    /// A session lent to one caller, given back at the end of its life.
    class Lease {
    public:
        Lease(ConnectionPool &pool, std::unique_ptr<Connection> connection);
        Lease(Lease &&) = default;
        ~Lease();
        Connection &operator*() const { return *m_connection; }
        Connection *operator->() const { return m_connection.get(); }

    private:
        ConnectionPool *m_pool;
        std::unique_ptr<Connection> m_connection;
    };

    ConnectionPool(std::string connectionText, std::size_t size);
    /// Waits while all sessions are lent. Throws DatabaseError when the database does not answer.
    Lease take();

private:
    void giveBack(std::unique_ptr<Connection> connection);

    std::string m_connectionText;
    std::mutex m_mutex;
    std::condition_variable m_returned;
    std::vector<std::unique_ptr<Connection>> m_idle;
    std::size_t m_free;
};
