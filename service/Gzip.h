#pragma once

#include <string>

/// Whether an "Accept-Encoding" header asks for gzip.
bool acceptsGzip(const std::string &acceptEncoding);

std::string gzipped(const std::string &bytes);
