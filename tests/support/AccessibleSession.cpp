#include "support/AccessibleSession.h"

#include <QDBusMessage>
#include <QDBusReply>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

constexpr int patience = 60'000; ///< milliseconds; a busy machine under a sanitizer is slow

const QString &busName()
{
    static const QString name = u"org.a11y.Bus"_s;
    return name;
}

const QString &busPath()
{
    static const QString path = u"/org/a11y/bus"_s;
    return path;
}

} // namespace

AccessibleSession::AccessibleSession()
    : m_bus(QString())
{
    qputenv("HOME", m_folder.path().toLocal8Bit());
    qputenv("XDG_RUNTIME_DIR", m_folder.path().toLocal8Bit());
    for (const char *name : {"XDG_CONFIG_HOME", "XDG_CACHE_HOME", "XDG_DATA_HOME"})
        qputenv(name, m_folder.filePath(QString::fromLatin1(name)).toLocal8Bit());
    // The switch is a desktop setting: this desktop's are forgotten with it.
    qputenv("GSETTINGS_BACKEND", "memory");
    // Else it would name the accessibility bus of the desktop that the test is run on.
    qunsetenv("AT_SPI_BUS_ADDRESS");

    m_session = std::make_unique<PrivateBus>(QStringList{busName()});
    const QString address = accessibilityBus();
    m_bus = QDBusConnection::connectToBus(address, u"reader"_s);
    if (!m_bus.isConnected())
        qFatal("no accessibility bus at %s", qPrintable(address));
    switchOn();
}

AccessibleSession::~AccessibleSession()
{
    // The accessibility service follows the session bus, and its own bus follows it.
    m_session.reset();
    if (!QTest::qWaitFor([this] { return !m_bus.isConnected(); }, patience))
        qWarning("the accessibility bus outlives its session");
    QDBusConnection::disconnectFromBus(u"reader"_s);
}

QString AccessibleSession::accessibilityBus() const
{
    auto session = QDBusConnection::connectToBus(m_session->address(), u"session"_s);
    const auto question =
        QDBusMessage::createMethodCall(busName(), busPath(), busName(), u"GetAddress"_s);
    const QDBusReply<QString> address = session.call(question, QDBus::Block, patience);
    QDBusConnection::disconnectFromBus(u"session"_s);
    if (!address.isValid())
        qFatal("no accessibility service: %s", qPrintable(address.error().message()));
    return address;
}

void AccessibleSession::switchOn() const
{
    auto session = QDBusConnection::connectToBus(m_session->address(), u"session"_s);
    auto wish = QDBusMessage::createMethodCall(busName(), busPath(),
                                               u"org.freedesktop.DBus.Properties"_s, u"Set"_s);
    wish << u"org.a11y.Status"_s << u"IsEnabled"_s << QVariant::fromValue(QDBusVariant(true));
    const QDBusMessage answer = session.call(wish, QDBus::Block, patience);
    QDBusConnection::disconnectFromBus(u"session"_s);
    if (answer.type() == QDBusMessage::ErrorMessage)
        qFatal("accessibility cannot be switched on: %s", qPrintable(answer.errorMessage()));
}
