#include "platform/UserDefaults.h"

#include "platform/PrivateFile.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStandardPaths>

#include <cerrno>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#ifdef Q_OS_MACOS
#include <CoreFoundation/CoreFoundation.h>
#endif

using namespace Qt::StringLiterals;

namespace {

// A value of this program is a few hundred bytes; whatever is larger was not written by it.
constexpr off_t largest = 1'048'576;

class Descriptor {
public:
    explicit Descriptor(int number)
        : m_number(number)
    {
    }
    ~Descriptor()
    {
        if (m_number >= 0)
            ::close(m_number);
    }
    Q_DISABLE_COPY_MOVE(Descriptor)

    int number() const { return m_number; }
    bool isOpen() const { return m_number >= 0; }

private:
    int m_number;
};

// Makes `path` and what is missing above it, each for the user alone.
void makeFolder(const QString &path)
{
    const QByteArray name = QFile::encodeName(path);
    if (::mkdir(name.constData(), S_IRWXU) == 0 || errno != ENOENT)
        return;
    const QString above = QFileInfo(path).path();
    if (above == path)
        return;
    makeFolder(above);
    ::mkdir(name.constData(), S_IRWXU);
}

} // namespace

UserDefaults &UserDefaults::standard()
{
#ifdef Q_OS_MACOS
    static UserDefaults defaults;
#else
    static UserDefaults defaults(
        QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) + u"/aMorvelle"_s);
#endif
    return defaults;
}

QByteArray UserDefaults::pathOf(const QString &key) const
{
    return QFile::encodeName(QDir(m_folder).filePath(key));
}

#ifdef Q_OS_MACOS
namespace {

struct Released {
    explicit Released(CFTypeRef held)
        : ref(held)
    {
    }
    ~Released()
    {
        if (ref)
            CFRelease(ref);
    }
    Q_DISABLE_COPY_MOVE(Released)
    CFTypeRef ref;
};

void setPreference(const QString &key, CFDataRef value)
{
    const Released name(key.toCFString());
    CFPreferencesSetAppValue(static_cast<CFStringRef>(name.ref), value,
                             kCFPreferencesCurrentApplication);
    CFPreferencesAppSynchronize(kCFPreferencesCurrentApplication);
}

std::optional<QByteArray> preference(const QString &key)
{
    const Released name(key.toCFString());
    const Released value(CFPreferencesCopyAppValue(static_cast<CFStringRef>(name.ref),
                                                   kCFPreferencesCurrentApplication));
    if (!value.ref || CFGetTypeID(value.ref) != CFDataGetTypeID())
        return std::nullopt;
    return QByteArray::fromCFData(static_cast<CFDataRef>(value.ref));
}

} // namespace
#endif

std::optional<QByteArray> UserDefaults::data(const QString &key) const
{
#ifdef Q_OS_MACOS
    if (m_folder.isEmpty())
        return preference(key);
#endif
    // Opened without waiting: what stands there might be a pipe.
    const Descriptor file(
        ::open(pathOf(key).constData(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC));
    struct stat about { };
    if (!file.isOpen() || ::fstat(file.number(), &about) != 0 || !S_ISREG(about.st_mode)
        || about.st_size > largest) {
        return std::nullopt;
    }
    QByteArray value(about.st_size, '\0');
    if (::read(file.number(), value.data(), static_cast<size_t>(value.size())) != value.size())
        return std::nullopt;
    return value;
}

void UserDefaults::set(const QString &key, const QByteArray &value)
{
#ifdef Q_OS_MACOS
    if (m_folder.isEmpty()) {
        const Released held(value.toCFData());
        setPreference(key, static_cast<CFDataRef>(held.ref));
        return;
    }
#endif
    if (value.size() > largest)
        return;
    makeFolder(m_folder);
    // A folder of ours that others may look into is closed to them.
    ::chmod(QFile::encodeName(m_folder).constData(), S_IRWXU);
    writePrivateFile(QDir(m_folder).filePath(key), value);
}

void UserDefaults::remove(const QString &key)
{
#ifdef Q_OS_MACOS
    if (m_folder.isEmpty()) {
        setPreference(key, nullptr);
        return;
    }
#endif
    ::unlink(pathOf(key).constData());
    removeDrafts(QDir(m_folder).filePath(key));
}
