#pragma once

#include "model/DecodeEvents.h"

/// The message of an events reply that cannot be decoded: why, and how the body begins. It claims
/// that the body was saved even if that failed. May run on any thread.
QString decodeFailureMessage(const DecodingError &error, const QByteArray &body);
