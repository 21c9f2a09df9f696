#pragma once

#include <QByteArray>
#include <QProcess>
#include <QTemporaryDir>

#include <cstddef>

/// A virtual X screen of its own, looked at from outside: through the file that its server keeps
/// the pixels in, so that looking is no work of the server that is measured with the program.
class Screen {
public:
    Screen();
    ~Screen();
    Q_DISABLE_COPY_MOVE(Screen)

    /// For DISPLAY.
    QByteArray display() const { return m_display; }
    /// A number for what the screen shows now: another one for another picture.
    std::size_t picture() const;

private:
    void map();

    QTemporaryDir m_folder;
    QProcess m_server;
    QByteArray m_display;
    const std::byte *m_file = nullptr;
    std::size_t m_size = 0;
    std::size_t m_pixels = 0; ///< where they begin
};
