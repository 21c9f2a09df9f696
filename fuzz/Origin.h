#pragma once

#include <QUrl>

#include <string>

/// Who is asked for an address, read off the letters that a request is made of.
struct Origin {
    std::string scheme;
    /// What stands before the "@"; empty when nothing does.
    std::string user;
    std::string host;
    std::string port;
};

Origin originOf(const QUrl &address);
