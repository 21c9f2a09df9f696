#pragma once

#include <stdexcept>

/// The service cannot start, or cannot go on; the text is for the person who started it.
struct StartFailure : std::runtime_error {
    using std::runtime_error::runtime_error;
};
