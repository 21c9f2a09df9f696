#pragma once

#include "service/Database.h"

#include <map>
#include <set>
#include <string>

/// The tables that the REST interface serves (those of schema public) and their columns, as they
/// were when the service started.
class Catalogue {
public:
    explicit Catalogue(Connection &connection);
    bool hasTable(const std::string &table) const { return m_tables.contains(table); }
    bool hasColumn(const std::string &table, const std::string &column) const;

private:
    std::map<std::string, std::set<std::string>> m_tables;
};
