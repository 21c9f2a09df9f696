#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <sys/types.h>

/// The file's bytes, or nothing when it cannot be read.
std::optional<std::string> readFile(const std::filesystem::path &path);

/// Writes beside the file and renames, so that a reader sees all of it or nothing. Throws
/// StartFailure.
void writeFileAtomically(const std::filesystem::path &path, const std::string &content,
                         mode_t mode);
