#include "support/ReaderDesktop.h"

ReaderDesktop::ReaderDesktop()
{
    m_screen = std::make_unique<VirtualScreen>();
    m_manager = std::make_unique<StandInWindowManager>();
    m_session = std::make_unique<AccessibleSession>();
}

ReaderDesktop::~ReaderDesktop()
{
    m_session.reset();
    m_manager.reset();
    m_screen.reset();
}
