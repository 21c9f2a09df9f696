#include "support/Orca.h"

#include <QFile>
#include <QStandardPaths>
#include <QTest>

#include <algorithm>
#include <csignal>
#include <sys/prctl.h>

using namespace Qt::StringLiterals;

namespace {

constexpr int patience = 120'000; ///< milliseconds; it starts slowly on a busy machine

} // namespace

QStringList Orca::missing()
{
    return QStandardPaths::findExecutable(u"orca"_s).isEmpty() ? QStringList{u"orca"_s}
                                                               : QStringList();
}

Orca::Orca()
{
    startVoice();
    m_reader.setChildProcessModifier([] { prctl(PR_SET_PDEATHSIG, SIGKILL); });
    auto environment = QProcessEnvironment::systemEnvironment();
    environment.insert(u"SPEECHD_ADDRESS"_s, u"unix_socket:"_s + m_folder.filePath(u"voice"_s));
    environment.insert(u"LC_ALL"_s, u"C.UTF-8"_s); // its own words in English everywhere
    m_reader.setProcessEnvironment(environment);
    m_reader.setStandardOutputFile(QProcess::nullDevice());
    m_reader.setStandardErrorFile(m_folder.filePath(u"errors"_s));
    // Where another one runs on the machine, for another test say, it gives up at once.
    const bool isThere = QTest::qWaitFor(
        [this] {
            if (m_reader.state() == QProcess::NotRunning)
                start();
            return hasSaid(u"Screen reader on."_s);
        },
        patience);
    if (!isThere) {
        QFile errors(m_folder.filePath(u"errors"_s));
        errors.open(QFile::ReadOnly);
        qFatal("Orca does not start: %s", errors.readAll().constData());
    }
    forget();
}

Orca::~Orca()
{
    m_reader.kill(); // it takes its time to say goodbye
    m_reader.waitForFinished();
    m_voice.closeWriteChannel(); // which it takes for its end
    if (!m_voice.waitForFinished())
        m_voice.kill();
    m_voice.waitForFinished();
}

bool Orca::hasSaid(const QString &words) const
{
    return std::ranges::any_of(heard(), [&](const QString &said) { return said.contains(words); });
}

int Orca::wordsHeard() const
{
    return static_cast<int>(heard().join(u' ').split(u' ', Qt::SkipEmptyParts).size());
}

void Orca::startVoice()
{
    m_voice.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    m_voice.setChildProcessModifier([] { prctl(PR_SET_PDEATHSIG, SIGKILL); });
    m_voice.start(QString::fromUtf8(AMORVELLE_STAND_IN_VOICE), {m_folder.filePath(u"voice"_s)});
    if (!m_voice.waitForReadyRead(patience) || m_voice.readLine() != "ready\n")
        qFatal("the voice does not start");
    QObject::connect(&m_voice, &QProcess::readyReadStandardOutput, &m_voice, [this] {
        while (m_voice.canReadLine())
            m_heard.append(QString::fromUtf8(m_voice.readLine()).trimmed());
    });
}

void Orca::start()
{
    QStringList arguments;
    const QString folder = qEnvironmentVariable("AMORVELLE_ORCA_FOLDER");
    if (!folder.isEmpty()) {
        const auto *test = QTest::currentTestFunction();
        arguments = {u"--debug-file"_s, u"%1/%2.log"_s.arg(folder, QString::fromLatin1(test))};
    }
    m_reader.start(u"orca"_s, arguments);
    m_reader.waitForStarted();
}
