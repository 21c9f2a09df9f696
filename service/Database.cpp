#include "service/Database.h"

#include <libpq-fe.h>

#include <cstddef>

namespace {

std::optional<std::string> field(const PGresult *result, int code)
{
    const char *text = PQresultErrorField(result, code);
    return text ? std::optional<std::string>(text) : std::nullopt;
}

void throwIfFailed(const PGresult *result, PGconn *connection)
{
    const ExecStatusType status = PQresultStatus(result);
    if (status == PGRES_TUPLES_OK || status == PGRES_COMMAND_OK || status == PGRES_EMPTY_QUERY)
        return;
    const auto state = field(result, PG_DIAG_SQLSTATE);
    if (!state || PQstatus(connection) == CONNECTION_BAD)
        throw DatabaseError("08006", PQerrorMessage(connection));
    throw DatabaseError(*state, field(result, PG_DIAG_MESSAGE_PRIMARY).value_or(""),
                        field(result, PG_DIAG_MESSAGE_DETAIL), field(result, PG_DIAG_MESSAGE_HINT));
}

} // namespace

Rows::Rows(pg_result *result)
    : m_result(result, PQclear)
{
}

int Rows::count() const
{
    return PQntuples(m_result.get());
}

std::string Rows::text(int row, int column) const
{
    return std::string(PQgetvalue(m_result.get(), row, column),
                       static_cast<std::size_t>(PQgetlength(m_result.get(), row, column)));
}

Connection::Connection(const std::string &connectionText)
    : m_connection(PQconnectdb(connectionText.c_str()), PQfinish)
{
    if (PQstatus(m_connection.get()) != CONNECTION_OK)
        throw DatabaseError("08006", PQerrorMessage(m_connection.get()));
    PQsetNoticeProcessor(
        m_connection.get(), [](void *, const char *) {}, nullptr);
}

Rows Connection::run(const std::string &statement, const std::vector<SqlValue> &values)
{
    std::vector<const char *> texts;
    for (const SqlValue &value : values) {
        // A text ends at its first NUL on the way to PostgreSQL, which stores none.
        if (value && value->find('\0') != std::string::npos)
            throw DatabaseError("22021", "invalid byte sequence for encoding \"UTF8\": 0x00");
        texts.push_back(value ? value->c_str() : nullptr);
    }
    PGconn *connection = m_connection.get();
    Rows rows(PQexecParams(connection, statement.c_str(), static_cast<int>(texts.size()), nullptr,
                           texts.data(), nullptr, nullptr, 0));
    throwIfFailed(rows.m_result.get(), connection);
    return rows;
}

void Connection::runScript(const std::string &statements)
{
    const std::unique_ptr<PGresult, void (*)(PGresult *)> result(
        PQexec(m_connection.get(), statements.c_str()), PQclear);
    throwIfFailed(result.get(), m_connection.get());
}

bool Connection::isIdle() const
{
    return PQstatus(m_connection.get()) == CONNECTION_OK
        && PQtransactionStatus(m_connection.get()) == PQTRANS_IDLE;
}

Transaction::Transaction(Connection &connection, const char *begin)
    : m_connection(connection)
{
    m_connection.run(begin);
}

Transaction::~Transaction()
{
    if (m_isOpen) {
        try {
            m_connection.run("rollback");
        } catch (const DatabaseError &) {
            // The session is gone and the transaction with it; the pool drops such a session.
        }
    }
}

void Transaction::commit()
{
    m_isOpen = false;
    m_connection.run("commit");
}

std::string quotedIdentifier(const std::string &name)
{
    std::string quoted = "\"";
    for (const char letter : name) {
        if (letter == '\0')
            throw DatabaseError("22021", "invalid byte sequence for encoding \"UTF8\": 0x00");
        quoted += letter == '"' ? "\"\"" : std::string(1, letter);
    }
    return quoted + '"';
}
