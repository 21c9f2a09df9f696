#pragma once

#include <QProcess>
#include <QString>

#include <csignal>
#include <sys/prctl.h>

/// An X server without hardware. The environment names its screen to the programs that this one
/// starts from then on.
class VirtualScreen {
public:
    VirtualScreen()
    {
        using namespace Qt::StringLiterals;
        constexpr int patience = 60'000; // milliseconds; a busy machine under a sanitizer is slow
        m_server.setChildProcessModifier([] { prctl(PR_SET_PDEATHSIG, SIGTERM); });
        // It takes the first number that is free and tells which, once it serves.
        m_server.start(u"Xvfb"_s,
                       {u"-displayfd"_s, u"1"_s, u"-screen"_s, u"0"_s, u"1366x768x24"_s,
                        u"-nolisten"_s, u"tcp"_s});
        if (!m_server.waitForReadyRead(patience))
            qFatal("Xvfb did not start: %s", m_server.readAllStandardError().constData());
        qputenv("DISPLAY", ":" + m_server.readLine().trimmed());
    }

    ~VirtualScreen()
    {
        m_server.terminate();
        m_server.waitForFinished();
    }

    Q_DISABLE_COPY_MOVE(VirtualScreen)

private:
    QProcess m_server;
};
