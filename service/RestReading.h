#pragma once

#include "service/Catalogue.h"
#include "service/ConnectionPool.h"
#include "service/Gateway.h"
#include "service/Reply.h"

#include <string>

/// What the REST interface answers from. Shared by all threads and never changed.
struct Rest {
    ConnectionPool &sessions;
    const Catalogue &catalogue;
    int maxRows;
};

/// Gives a transaction the caller's role and claims until it ends.
void actAs(Connection &connection, const Caller &caller);

/// Throws the Reply for a table that is not there.
void requireTable(const Rest &rest, const std::string &table);

/// The content type of a reply that shows rows, as a list or as one object.
std::string rowsType(bool isSingle);

/// GET of a table's rows: select, order, filters, limit and offset or a range of rows.
Reply readRows(const Rest &rest, const Call &call, const Caller &caller, const std::string &table);
