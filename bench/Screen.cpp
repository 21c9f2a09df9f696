#include "Screen.h"

#include <QFile>
#include <QHash>
#include <QtEndian>

#include <csignal>
#include <fcntl.h>
#include <sys/mman.h>
#include <sys/prctl.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

Screen::Screen()
{
    // Little larger than the window, which opens in its corner: there is less to look at.
    m_server.setChildProcessModifier([] { prctl(PR_SET_PDEATHSIG, SIGKILL); });
    m_server.start(u"Xvfb"_s,
                   {u"-displayfd"_s, u"1"_s, u"-nolisten"_s, u"tcp"_s, u"-noreset"_s,
                    u"-nocursor"_s, u"-screen"_s, u"0"_s, u"800x640x24"_s, u"-fbdir"_s,
                    m_folder.path()});
    if (!m_server.waitForReadyRead())
        qFatal("Xvfb does not start");
    m_display = ':' + m_server.readLine().trimmed();
    map();
}

Screen::~Screen()
{
    munmap(const_cast<std::byte *>(m_file), m_size);
    m_server.terminate();
    m_server.waitForFinished();
}

void Screen::map()
{
    const QByteArray name = QFile::encodeName(m_folder.filePath(u"Xvfb_screen0"_s));
    const int file = open(name.constData(), O_RDONLY | O_CLOEXEC);
    struct stat status { };
    if (file < 0 || fstat(file, &status) != 0)
        qFatal("the screen has no file");
    m_size = static_cast<std::size_t>(status.st_size);
    void *const place = mmap(nullptr, m_size, PROT_READ, MAP_SHARED, file, 0);
    close(file);
    if (place == MAP_FAILED)
        qFatal("the screen's file cannot be read");
    m_file = static_cast<const std::byte *>(place);
    // As the format of X window dumps has it: the header's length first, its twentieth number is
    // that of the colours that follow it, twelve bytes each.
    const auto number = [this](std::size_t index) {
        return qFromBigEndian<quint32>(m_file + index * sizeof(quint32));
    };
    m_pixels = number(0) + std::size_t{12} * number(19);
}

std::size_t Screen::picture() const
{
    // The toolkit's hash of bytes looks at sixteen at once: whoever looks takes a share of the
    // machine from those who are looked at.
    return qHashBits(m_file + m_pixels, m_size - m_pixels);
}
