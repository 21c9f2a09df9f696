#pragma once

#include <QHash>
#include <QLocalSocket>
#include <QPoint>
#include <QSize>

/// A mouse for a Wayland compositor that takes virtual ones (wlr-virtual-pointer-unstable-v1), as
/// real to its clients as any other. It speaks the wire protocol itself: a mouse needs little of
/// it. Each call returns when the compositor has dealt with it.
class VirtualPointer {
public:
    /// `socket`: the compositor's. `screen`: its one output's size in pixels.
    VirtualPointer(const QString &socket, const QSize &screen);

    void moveTo(QPoint point);
    void press();
    void release();
    void click(QPoint point);

private:
    struct Global {
        quint32 name;
        QByteArray interface;
    };

    quint32 newId() { return ++m_lastId; }
    void send(quint32 object, quint16 request, const QList<quint32> &arguments);
    void bind(const QByteArray &interface, quint32 id);
    void button(bool isDown);
    void frame();
    /// Waits until the compositor has read all that was sent.
    void sync();
    /// Whether this was the answer that `callback` is for.
    bool readMessage(quint32 callback);

    QLocalSocket m_socket;
    QSize m_screen;
    quint32 m_lastId = 1; ///< 1 is the display
    QHash<QByteArray, quint32> m_globals; ///< the number of each interface
    QByteArray m_unread;
    quint32 m_registry = 0;
    quint32 m_pointer = 0;
};
