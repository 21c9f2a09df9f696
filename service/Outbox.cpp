#include "service/Outbox.h"

#include "service/Files.h"
#include "service/Keys.h"

#include <chrono>

void Outbox::send(const std::string &address, const std::string &subject,
                  const std::string &text) const
{
    std::error_code ignored;
    std::filesystem::create_directories(m_folder, ignored);
    std::filesystem::permissions(m_folder, std::filesystem::perms::owner_all, ignored);
    const auto now = std::chrono::system_clock::now().time_since_epoch();
    const auto stamp = std::chrono::duration_cast<std::chrono::microseconds>(now).count();
    writeFileAtomically(m_folder / (std::to_string(stamp) + '-' + randomText(4) + ".eml"),
                        "To: " + address + "\nSubject: " + subject + "\n\n" + text + '\n', 0600);
}
