#pragma once

#include <nlohmann/json.hpp>
#include <string>

/// What a client's text holds; `is_discarded` when it is no JSON, or nested deeper than anybody
/// means: each level costs stack when a value is copied, written or handed to the database.
nlohmann::json parsedJson(const std::string &text);
