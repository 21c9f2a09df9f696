#pragma once

#include "model/Event.h"

#include <optional>

/// Whether the person may change and delete the event: its owner is the account signed in. With
/// nobody signed in, an event without an owner counts as one's own (the service then refuses the
/// change).
bool isOwner(const Event &event, const std::optional<QString> &currentUserId);
