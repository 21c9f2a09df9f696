#include "support/ReaderProgram.h"

#include <csignal>
#include <sys/prctl.h>

using AtSpi::Object;
using AtSpi::Role;
using AtSpi::State;

namespace {

/// None for what only holds other things.
QString wordOf(Role role)
{
    switch (role) {
    case Role::Alert:
        return QStringLiteral("alert");
    case Role::Dialog:
        return QStringLiteral("dialog");
    case Role::Frame:
        return QStringLiteral("frame");
    case Role::Label:
        return QStringLiteral("label");
    case Role::List:
        return QStringLiteral("list");
    case Role::ListItem:
        return QStringLiteral("item");
    case Role::PageTab:
        return QStringLiteral("tab");
    case Role::Panel:
        return QStringLiteral("panel");
    case Role::PushButton:
        return QStringLiteral("button");
    case Role::Text:
        return QStringLiteral("text");
    case Role::Heading:
        return QStringLiteral("heading");
    case Role::Link:
        return QStringLiteral("link");
    case Role::Notification:
        return QStringLiteral("notification");
    case Role::Filler:
    case Role::PageTabList:
        return {};
    }
    return QStringLiteral("role %1").arg(static_cast<uint>(role));
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

ReaderProgram::ReaderProgram(const ReaderDesktop &desktop, const HttpServer &service)
    : m_bus(desktop.bus())
{
    auto environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("xcb"));
    environment.insert(QStringLiteral("SUPABASE_URL"), service.base());
    environment.insert(QStringLiteral("SUPABASE_KEY"), QStringLiteral("key"));
    m_process.setProcessEnvironment(environment);
    m_process.setProcessChannelMode(QProcess::ForwardedChannels);
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
    return Object::program(m_bus, QStringLiteral("aMorvelle"));
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
