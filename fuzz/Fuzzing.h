#pragma once

#include <QString>

#include <string_view>
#include <vector>

/// What a fuzzer does with one input; each program has its own.
void fuzz(std::string_view input);

/// Unless `holds`, ends the program, so that the fuzzer keeps the input; `promise` says in the log
/// what was broken.
void require(bool holds, const char *promise);

/// The parts of an input that holds several things: the byte 0xFF, which no UTF-8 has, stands
/// between them. There are always `count`; the last takes the rest.
std::vector<std::string_view> partsOf(std::string_view input, size_t count);

/// A part as a text; what is not UTF-8 becomes U+FFFD.
QString textFrom(std::string_view part);

/// A part as the bytes of a reply. They are not copied.
QByteArray bytesFrom(std::string_view part);
