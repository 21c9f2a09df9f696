#pragma once

#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

struct pg_conn;
struct pg_result;

/// What PostgreSQL answers instead of doing it.
struct DatabaseError : std::runtime_error {
    DatabaseError(std::string state, const std::string &message,
                  std::optional<std::string> detail = std::nullopt,
                  std::optional<std::string> hint = std::nullopt)
        : std::runtime_error(message)
        , sqlState(std::move(state))
        , details(std::move(detail))
        , advice(std::move(hint))
    {
    }

    std::string sqlState; ///< five characters; 08006 when the connection is gone
    std::optional<std::string> details;
    std::optional<std::string> advice;
};

using SqlValue = std::optional<std::string>;

/// The rows that a statement gave.
class Rows {
public:
    explicit Rows(pg_result *result);
    int count() const;
    /// The text of a field, empty for NULL.
    std::string text(int row, int column) const;

private:
    friend class Connection;
    std::shared_ptr<pg_result> m_result;
};

/// One session with the database. Not for use by two threads at a time. Everything throws
/// DatabaseError.
class Connection {
public:
    explicit Connection(const std::string &connectionText);

    /// Runs one statement; `values` stand for $1, $2, ... and are never part of its text.
    Rows run(const std::string &statement, const std::vector<SqlValue> &values = {});
    /// Runs any number of statements, without values.
    void runScript(const std::string &statements);
    /// Whether the session is alive and outside of any transaction.
    bool isIdle() const;

private:
    std::shared_ptr<pg_conn> m_connection;
};

/// A transaction that is rolled back unless it is committed.
class Transaction {
public:
    explicit Transaction(Connection &connection, const char *begin = "begin");
    Transaction(const Transaction &) = delete;
    Transaction &operator=(const Transaction &) = delete;
    ~Transaction();
    void commit();

private:
    Connection &m_connection;
    bool m_isOpen = true;
};

/// The name as an SQL identifier, whatever characters it holds.
std::string quotedIdentifier(const std::string &name);
