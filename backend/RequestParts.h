#pragma once

#include "backend/Configuration.h"
#include "backend/Request.h"

#include <utility>

/// What the requests of all operations are put together from.
using Header = std::pair<QByteArray, QByteArray>;

/// The service is to answer in JSON.
Header acceptJson();
/// The body is JSON.
Header jsonContent();

/// The public key, which goes with every request.
Header apiKey(const Configuration &configuration);
/// The authority a request is made with: a member's token, or the public key.
Header bearer(const QString &token);

/// Throws SupabaseError `missingConfig` unless there is an address and a key.
void requireComplete(const Configuration &configuration);
/// The base address with `path` behind it, as one text. Throws SupabaseError `invalidURL` when that
/// is no address, TransportError when it is one of a host that cannot be.
QUrl addressOf(const Configuration &configuration, const QString &path);
