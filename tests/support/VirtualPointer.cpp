#include "support/VirtualPointer.h"

#include <QElapsedTimer>

#include <cstring>

namespace {

constexpr int patience = 60'000; ///< milliseconds
constexpr quint32 display = 1;
constexpr quint32 headSize = 8;

quint32 wordAt(const QByteArray &bytes, qsizetype offset)
{
    quint32 word = 0;
    std::memcpy(&word, bytes.constData() + offset, sizeof word);
    return word;
}

quint32 now()
{
    QElapsedTimer timer;
    timer.start();
    return static_cast<quint32>(timer.msecsSinceReference());
}

} // namespace

VirtualPointer::VirtualPointer(const QString &socket, const QSize &screen)
    : m_screen(screen)
{
    m_socket.connectToServer(socket);
    if (!m_socket.waitForConnected(patience))
        qFatal("no compositor at %s", qPrintable(socket));
    m_registry = newId();
    send(display, 1, {m_registry}); // get_registry
    sync();
    const quint32 seat = newId();
    bind("wl_seat", seat);
    const quint32 manager = newId();
    bind("zwlr_virtual_pointer_manager_v1", manager);
    m_pointer = newId();
    send(manager, 0, {seat, m_pointer}); // create_virtual_pointer
    sync();
}

void VirtualPointer::moveTo(QPoint point)
{
    send(m_pointer, 1, // motion_absolute
         {now(), static_cast<quint32>(point.x()), static_cast<quint32>(point.y()),
          static_cast<quint32>(m_screen.width()), static_cast<quint32>(m_screen.height())});
    frame();
}

void VirtualPointer::press()
{
    button(true);
}

void VirtualPointer::release()
{
    button(false);
}

void VirtualPointer::click(QPoint point)
{
    moveTo(point);
    press();
    release();
}

void VirtualPointer::send(quint32 object, quint16 request, const QList<quint32> &arguments)
{
    QList<quint32> words{object, 0};
    words += arguments;
    words[1] = static_cast<quint32>(words.size() * qsizetype(sizeof(quint32))) << 16U | request;
    m_socket.write(reinterpret_cast<const char *>(words.constData()),
                   words.size() * qsizetype(sizeof(quint32)));
}

void VirtualPointer::bind(const QByteArray &interface, quint32 id)
{
    if (!m_globals.contains(interface))
        qFatal("the compositor has no %s", interface.constData());
    // A text goes with its length and its end, padded to whole words.
    QByteArray text = interface + '\0';
    const auto length = static_cast<quint32>(text.size());
    text.append((4 - text.size() % 4) % 4, '\0');
    QList<quint32> arguments{m_globals.value(interface), length};
    for (qsizetype i = 0; i < text.size(); i += 4)
        arguments.append(wordAt(text, i));
    arguments += {1, id}; // its first version has all that is used here
    send(m_registry, 0, arguments);
}

void VirtualPointer::button(bool isDown)
{
    constexpr quint32 left = 0x110;
    send(m_pointer, 2, {now(), left, isDown ? 1U : 0U});
    frame();
}

void VirtualPointer::frame()
{
    send(m_pointer, 4, {});
    sync();
}

void VirtualPointer::sync()
{
    const quint32 callback = newId();
    send(display, 0, {callback});
    m_socket.flush();
    while (!readMessage(callback)) {
        const bool isWhole =
            m_unread.size() >= headSize && m_unread.size() >= qsizetype(wordAt(m_unread, 4) >> 16U);
        if (!isWhole && m_socket.bytesAvailable() == 0 && !m_socket.waitForReadyRead(patience))
            qFatal("the compositor does not answer");
        m_unread += m_socket.readAll();
    }
}

bool VirtualPointer::readMessage(quint32 callback)
{
    if (m_unread.size() < headSize)
        return false;
    const quint32 object = wordAt(m_unread, 0);
    const quint32 size = wordAt(m_unread, 4) >> 16U;
    const quint32 event = wordAt(m_unread, 4) & 0xFFFFU;
    if (m_unread.size() < qsizetype(size))
        return false;
    const QByteArray message = m_unread.first(size);
    m_unread.remove(0, size);
    if (object == display && event == 0)
        qFatal("the compositor refuses a request");
    if (object == m_registry && event == 0) {
        const auto length = qsizetype(wordAt(message, headSize + 4));
        m_globals.insert(message.mid(headSize + 8, length - 1), wordAt(message, headSize));
    }
    return object == callback;
}
