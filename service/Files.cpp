#include "service/Files.h"

#include "service/StartFailure.h"

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <fstream>
#include <sstream>
#include <sys/stat.h>
#include <unistd.h>

std::optional<std::string> readFile(const std::filesystem::path &path)
{
    std::ifstream file(path, std::ios::binary);
    if (!file)
        return std::nullopt;
    std::ostringstream content;
    content << file.rdbuf();
    return content.str();
}

void writeFileAtomically(const std::filesystem::path &path, const std::string &content, mode_t mode)
{
    const std::string draft = path.string() + ".new";
    const auto fail = [&] {
        throw StartFailure("cannot write " + path.string() + ": " + std::strerror(errno));
    };
    unlink(draft.c_str());
    const int file = open(draft.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, mode);
    if (file < 0)
        fail();
    const ssize_t written = write(file, content.data(), content.size());
    const bool stored = written == static_cast<ssize_t>(content.size()) && fsync(file) == 0;
    close(file);
    if (!stored || rename(draft.c_str(), path.c_str()) != 0)
        fail();
}
