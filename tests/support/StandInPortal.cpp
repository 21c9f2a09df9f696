#include "support/StandInPortal.h"

#include "support/PrivateBus.h"

#include <csignal>
#include <sys/prctl.h>

using namespace Qt::StringLiterals;

StandInPortal::StandInPortal(const PrivateBus &bus, uint scheme, uint contrast)
{
    m_program.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    m_program.setChildProcessModifier([] { prctl(PR_SET_PDEATHSIG, SIGKILL); });
    m_program.start(QString::fromUtf8(AMORVELLE_STAND_IN_PORTAL),
                    {bus.address(), QString::number(scheme), QString::number(contrast)});
    if (!m_program.waitForReadyRead(20'000) || m_program.readLine() != "ready\n")
        qFatal("the stand-in portal does not start");
    connect(&m_program, &QProcess::readyReadStandardOutput, this, &StandInPortal::read);
}

StandInPortal::~StandInPortal()
{
    m_program.closeWriteChannel(); // which it takes for its end
    if (!m_program.waitForFinished())
        m_program.kill();
    m_program.waitForFinished();
}

void StandInPortal::change(uint scheme)
{
    tell(u"org.freedesktop.appearance"_s, u"color-scheme"_s, scheme);
}

void StandInPortal::changeContrast(uint contrast)
{
    tell(u"org.freedesktop.appearance"_s, u"contrast"_s, contrast);
}

void StandInPortal::tell(const QString &group, const QString &key, uint value)
{
    command(u"tell %1 %2 %3"_s.arg(group, key).arg(value));
}

void StandInPortal::holdAnswers()
{
    command(u"hold"_s);
}

void StandInPortal::answer()
{
    command(u"answer"_s);
}

void StandInPortal::command(const QString &line)
{
    m_program.write(line.toLatin1() + '\n');
    m_program.waitForBytesWritten();
    // It says when it has done so: what the test does next comes after.
    while (!m_program.canReadLine() || m_program.peek(5) != "done\n") {
        read();
        if (!m_program.canReadLine() && !m_program.waitForReadyRead(20'000))
            qFatal("the stand-in portal does not answer");
    }
    m_program.readLine();
}

void StandInPortal::read()
{
    while (m_program.canReadLine() && m_program.peek(5) != "done\n")
        m_questions.append(QString::fromLatin1(m_program.readLine()).trimmed());
}
