#pragma once

#include <string>

/// Now, as HTTP writes it: "Sat, 21 Nov 2026 15:00:00 GMT".
std::string httpDate();
