#pragma once

#include <QByteArray>
#include <QtGlobal>

/// As long as it lives, nothing says where a session bus would be.
class WithoutBus {
public:
    WithoutBus()
    {
        qunsetenv("DBUS_SESSION_BUS_ADDRESS");
        qunsetenv("XDG_RUNTIME_DIR");
    }
    ~WithoutBus()
    {
        qputenv("DBUS_SESSION_BUS_ADDRESS", m_address);
        qputenv("XDG_RUNTIME_DIR", m_folder);
    }
    Q_DISABLE_COPY_MOVE(WithoutBus)

private:
    const QByteArray m_address = qgetenv("DBUS_SESSION_BUS_ADDRESS");
    const QByteArray m_folder = qgetenv("XDG_RUNTIME_DIR");
};
