#include "service/Catalogue.h"

#include <string>

Catalogue::Catalogue(Connection &connection)
{
    const Rows rows = connection.run(
        "select c.relname, a.attname from pg_class c "
        "join pg_attribute a on a.attrelid = c.oid and a.attnum > 0 and not a.attisdropped "
        "where c.relnamespace = 'public'::regnamespace and c.relkind in ('r', 'p', 'v', 'm', 'f')");
    for (int row = 0; row < rows.count(); ++row)
        m_tables[rows.text(row, 0)].insert(rows.text(row, 1));
}

bool Catalogue::hasColumn(const std::string &table, const std::string &column) const
{
    const auto found = m_tables.find(table);
    return found != m_tables.end() && found->second.contains(column);
}
