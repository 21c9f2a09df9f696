#pragma once

#include <string>

/// Whether a hosted project takes the text for an e-mail address: before the "@" letters, digits
/// and the marks that mail allows there; after it names joined by dots, one being enough.
bool isEmail(const std::string &text);
