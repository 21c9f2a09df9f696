#pragma once

#include "backend/Request.h"

#include <optional>

/// How many redirects in a row a request follows.
inline constexpr int mostRedirects = 5;

/// Where a reply of this status and location sends `request` on to, if it may go there:
/// only a request that reads, and only to the scheme, host and port it was meant for, because its
/// headers carry the key and the member's token. All else is judged as the status it is.
std::optional<QUrl> redirected(const Request &request, std::optional<int> status,
                               const QUrl &location);
