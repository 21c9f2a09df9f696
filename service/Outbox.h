#pragma once

#include <filesystem>
#include <string>
#include <utility>

/// Where mail goes that a hosted project would send: one file a message, for its owner's eyes only.
class Outbox {
public:
    explicit Outbox(std::filesystem::path folder)
        : m_folder(std::move(folder))
    {
    }
    /// Any thread may call it. Throws StartFailure when the message cannot be written.
    void send(const std::string &address, const std::string &subject,
              const std::string &text) const;

private:
    std::filesystem::path m_folder;
};
