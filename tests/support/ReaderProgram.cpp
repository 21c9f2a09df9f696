#include "support/ReaderProgram.h"

#include <csignal>
#include <cstdio>
#include <sys/prctl.h>

using namespace Qt::StringLiterals;

using AtSpi::Object;
using AtSpi::Role;
using AtSpi::State;

namespace {

/// None for what only holds other things.
QString wordOf(Role role)
{
    switch (role) {
    case Role::Alert:
        return u"alert"_s;
    case Role::Dialog:
        return u"dialog"_s;
    case Role::Frame:
        return u"frame"_s;
    case Role::Label:
        return u"label"_s;
    case Role::List:
        return u"list"_s;
    case Role::ListItem:
        return u"item"_s;
    case Role::PageTab:
        return u"tab"_s;
    case Role::Panel:
        return u"panel"_s;
    case Role::PushButton:
        return u"button"_s;
    case Role::Text:
        return u"text"_s;
    case Role::Heading:
        return u"heading"_s;
    case Role::Link:
        return u"link"_s;
    case Role::Notification:
        return u"notification"_s;
    case Role::Filler:
    case Role::PageTabList:
        return {};
    }
    return u"role %1"_s.arg(static_cast<uint>(role));
}

void hear(const Object &object, QStringList &heard)
{
    if (!object.has(State::Showing))
        return;
    const Role role = object.role();
    const QString word = wordOf(role);
    if (!word.isEmpty())
        heard.append((word + QLatin1Char(' ') + object.name()).trimmed());
    if (role == Role::List)
        return;
    const auto children = object.children();
    for (const Object &child : children)
        hear(child, heard);
}

} // namespace

ReaderProgram::ReaderProgram(const QDBusConnection &bus, const HttpServer &service,
                             const QByteArray &platform)
    : m_bus(bus)
{
    auto environment = QProcessEnvironment::systemEnvironment();
    environment.insert(u"QT_QPA_PLATFORM"_s, QString::fromLatin1(platform));
    environment.insert(u"SUPABASE_URL"_s, service.base());
    environment.insert(u"SUPABASE_KEY"_s, u"key"_s);
    m_process.setProcessEnvironment(environment);
    m_process.setProcessChannelMode(QProcess::ForwardedOutputChannel);
    m_process.setReadChannel(QProcess::StandardError);
    QObject::connect(&m_process, &QProcess::readyReadStandardError, &m_process, [this] {
        while (m_process.canReadLine()) {
            m_complaints.append(QString::fromLocal8Bit(m_process.readLine()).trimmed());
            fprintf(stderr, "aMorvelle: %s\n", qPrintable(m_complaints.last()));
        }
    });
    m_process.setChildProcessModifier([] { prctl(PR_SET_PDEATHSIG, SIGKILL); });
    m_process.start(QStringLiteral(AMORVELLE_PROGRAM), QStringList());
    if (!m_process.waitForStarted())
        qFatal("the program does not start");
}

ReaderProgram::~ReaderProgram()
{
    m_process.terminate();
    if (!m_process.waitForFinished())
        m_process.kill();
    m_process.waitForFinished();
}

Object ReaderProgram::object() const
{
    return Object::program(m_bus, u"aMorvelle"_s);
}

Object ReaderProgram::list() const
{
    const Object list = object().find(Role::List);
    return list.childCount() > 0 ? list : Object();
}

QStringList ReaderProgram::heard(const Object &object)
{
    QStringList heard;
    hear(object, heard);
    return heard;
}
