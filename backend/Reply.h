#pragma once

#include <QByteArray>
#include <optional>

/// What came back for a request: the whole body, inflated, and the status if it was HTTP.
struct Reply {
    std::optional<int> status;
    QByteArray body;
};

/// The one judge of replies: the body of a success (200-299). Throws SupabaseError
/// `invalidResponse` for a reply that is not HTTP, `httpError` for any other status.
QByteArray judged(std::optional<int> status, QByteArray body);
