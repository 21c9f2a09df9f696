#include "support/ReaderDesktop.h"

#include <csignal>
#include <sys/prctl.h>

using namespace Qt::StringLiterals;

ReaderDesktop::ReaderDesktop()
{
    startScreen();
    m_manager = std::make_unique<StandInWindowManager>();
    m_session = std::make_unique<AccessibleSession>();
}

ReaderDesktop::~ReaderDesktop()
{
    m_session.reset();
    m_manager.reset();
    m_screen.terminate();
    m_screen.waitForFinished();
}

void ReaderDesktop::startScreen()
{
    constexpr int patience = 60'000; // milliseconds; a busy machine under a sanitizer is slow
    m_screen.setChildProcessModifier([] { prctl(PR_SET_PDEATHSIG, SIGTERM); });
    // It takes the first number that is free and tells which, once it serves.
    m_screen.start(u"Xvfb"_s,
                   {u"-displayfd"_s, u"1"_s, u"-screen"_s, u"0"_s, u"1366x768x24"_s, u"-nolisten"_s,
                    u"tcp"_s});
    if (!m_screen.waitForReadyRead(patience))
        qFatal("Xvfb did not start: %s", m_screen.readAllStandardError().constData());
    qputenv("DISPLAY", ":" + m_screen.readLine().trimmed());
}
