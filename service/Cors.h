#pragma once

#include "service/Reply.h"

#include <optional>
#include <string>

// A browser asks whether a page may use this service. Pages that this machine serves to itself may;
// those of the internet may not, whose visitor would otherwise lend them the local service.

/// Whether pages of that origin come from this machine.
bool isOfThisMachine(const std::string &origin);

/// The answer to a browser that asks before it asks; nothing for any other request.
std::optional<Reply> preflightReply(const Call &call);

/// Lets the page that has sent the request read the reply, too.
void allowReading(const Call &call, Reply &reply);
