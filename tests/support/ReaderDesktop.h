#pragma once

#include "support/AccessibleSession.h"
#include "support/StandInWindowManager.h"
#include "support/VirtualScreen.h"

#include <memory>

/// A screen with a window manager, and an accessible session. The environment names all of it to
/// the programs that this one starts from then on.
class ReaderDesktop {
public:
    ReaderDesktop();
    /// Ends what it started.
    ~ReaderDesktop();
    Q_DISABLE_COPY_MOVE(ReaderDesktop)

    /// The bus that readers and programs talk over.
    const QDBusConnection &bus() const { return m_session->bus(); }

private:
    std::unique_ptr<VirtualScreen> m_screen;
    std::unique_ptr<StandInWindowManager> m_manager;
    std::unique_ptr<AccessibleSession> m_session;
};
