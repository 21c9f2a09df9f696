#pragma once

#include "backend/Exchange.h"
#include "backend/TransportError.h"

#include <optional>

/// Whether an exchange failed before the service could be judged, in our own words: the manager's
/// are odd (a silent server reads "Operation canceled"). None when there is a whole reply, also one
/// whose status the manager takes for an error.
std::optional<TransportError> transportFailure(const Received &received, const QUrl &address,
                                               const Limits &limits);

/// The failure of an address whose host cannot be found, or cannot exist.
TransportError unknownHost(const QString &host);
/// The failure of a body of more than `largest` bytes.
TransportError tooLargeReply(qint64 largest);
