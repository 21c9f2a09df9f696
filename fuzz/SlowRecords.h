#pragma once

#include "account/Credentials.h"
#include "backend/AuthRecords.h"
#include "fuzz/SlowJson.h"

#include <optional>

// The records of an account in a body, a member after the other; none where one is not as expected.

std::optional<Credentials> slowCredentials(const std::optional<SlowJson> &body);
std::optional<AuthResponse> slowAuthResponse(const std::optional<SlowJson> &body);
std::optional<AuthErrorResponse> slowAuthErrorResponse(const std::optional<SlowJson> &body);
