#pragma once

#include "support/PrivateBus.h"
#include "support/StandInWindowManager.h"

#include <QDBusConnection>
#include <QProcess>
#include <QTemporaryDir>

#include <memory>

/// A screen with a window manager and a session bus of the test's own, with the desktop's
/// accessibility service on that bus, switched on as a screen reader does it. The environment names
/// all of it to the programs that this one starts from then on, and gives them folders of their
/// own.
class ReaderDesktop {
public:
    ReaderDesktop();
    /// Ends what it started, and what the bus has started by itself.
    ~ReaderDesktop();
    Q_DISABLE_COPY_MOVE(ReaderDesktop)

    /// The bus that readers and programs talk over.
    const QDBusConnection &bus() const { return m_bus; }

private:
    void startScreen();
    QString accessibilityBus() const;
    void switchOn() const;

    QTemporaryDir m_folder;
    QProcess m_screen;
    std::unique_ptr<StandInWindowManager> m_manager;
    std::unique_ptr<PrivateBus> m_session;
    QDBusConnection m_bus;
};
