#pragma once

#include "support/PrivateBus.h"

#include <QDBusConnection>
#include <QTemporaryDir>

#include <memory>

/// A session bus of the test's own with the desktop's accessibility service on it, switched on as a
/// screen reader does it. The environment names it to the programs that this one starts from then
/// on, and gives them folders of their own.
class AccessibleSession {
public:
    AccessibleSession();
    /// Ends what it started, and what the bus has started by itself.
    ~AccessibleSession();
    Q_DISABLE_COPY_MOVE(AccessibleSession)

    /// The bus that readers and programs talk over.
    const QDBusConnection &bus() const { return m_bus; }
    const PrivateBus &session() const { return *m_session; }

private:
    QString accessibilityBus() const;
    void switchOn() const;

    QTemporaryDir m_folder;
    std::unique_ptr<PrivateBus> m_session;
    QDBusConnection m_bus;
};
