#pragma once

#include "platform/Instant.h"

#include <functional>

/// Tells the time. Views get one, so that midnight need not be waited for; Instant::now is the
/// host's.
using Now = std::function<Instant()>;
