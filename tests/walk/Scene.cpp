#include "walk/Scene.h"

#include "browse/ContentView.h"
#include "look/Accessibility.h"
#include "look/ApplicationPalette.h"
#include "sectionlist/SectionListAccessible.h"
#include "support/Await.h"
#include "support/OwnHome.h"
#include "walk/Rows.h"

#include <QApplication>
#include <QDeadlineTimer>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProxyStyle>
#include <QScreen>
#include <QTimer>

#include <chrono>
#include <limits>
#include <memory>

using namespace Qt::StringLiterals;

namespace {

constexpr int enough = 20'000; // ms

/// A style without what comes and goes by the clock: the busy indicator stands still, and nothing
/// tells of itself to a pointer that rests.
class StillStyle : public QProxyStyle {
public:
    int styleHint(StyleHint hint, const QStyleOption *option, const QWidget *widget,
                  QStyleHintReturn *returned) const override
    {
        if (hint == SH_Widget_Animation_Duration)
            return 0;
        if (hint == SH_ToolTip_WakeUpDelay)
            return std::numeric_limits<int>::max();
        return QProxyStyle::styleHint(hint, option, widget, returned);
    }
};

} // namespace

int Scene::run(int argc, char *argv[], const std::function<int()> &body)
{
    const OwnHome home;
    QApplication::setStyle(new StillStyle);
    const QApplication application(argc, argv);
    QApplication::setCursorFlashTime(0);
    installAccessibility();
    installSectionListAccessibility();
    return body();
}

void Scene::quieten()
{
    static QtMessageHandler former = nullptr;
    const QtMessageHandler mine = [](QtMsgType type, const QMessageLogContext &context,
                                     const QString &text) {
        if (!text.startsWith(u"This plugin does not support"_s))
            former(type, context, text);
    };
    former = qInstallMessageHandler(mine);
}

Scene::Stage::Stage()
{
    qputenv("SUPABASE_URL", m_server.base().toLatin1());
    qputenv("SUPABASE_KEY", "public-key");
    m_backend.emplace(qEnvironmentVariable("XDG_CONFIG_HOME") + u"/reply.json"_s);
    SupabaseClient::clearSavedCredentials();
}

Scene::Stage::~Stage()
{
    m_backend.reset();
    settle();
}

bool Scene::waitFor(const std::function<bool()> &condition, int patience)
{
    const QDeadlineTimer deadline(patience);
    // For what happens without an event here.
    QTimer pulse;
    pulse.start(std::chrono::milliseconds(25));
    while (!condition()) {
        if (deadline.hasExpired())
            return false;
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QCoreApplication::processEvents(QEventLoop::AllEvents | QEventLoop::WaitForMoreEvents);
    }
    return true;
}

std::unique_ptr<ContentView> Scene::openWindow(QSize size, bool dark, const Now &now)
{
    setDark(dark);
    // Where no window is.
    QCursor::setPos(QGuiApplication::primaryScreen()->geometry().bottomRight());
    auto window = std::make_unique<ContentView>(nullptr, now);
    window->move(0, 0);
    window->resize(size);
    window->show();
    window->activateWindow();
    if (!waitFor([&window] { return window->isActiveWindow(); }, enough))
        qWarning("the window does not come to the front");
    return window;
}

void Scene::setDark(bool dark)
{
    QApplication::setPalette(applicationPalette(dark ? ColorScheme::Dark : ColorScheme::Light));
}

void Scene::settle()
{
    constexpr int rounds = 4;
    for (int i = 0; i < rounds; ++i) {
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QCoreApplication::processEvents();
    }
}

HttpAnswer Scene::success(const QByteArray &rows)
{
    return HttpAnswer::whole(200, rows, {{"Content-Type", "application/json"}});
}

HttpAnswer Scene::failure(int status, int number)
{
    return HttpAnswer::whole(status, R"({"message":"non )" + QByteArray::number(number) + R"("})");
}

HttpAnswer Scene::signedIn(const HttpRequest &request)
{
    const QString email =
        QJsonDocument::fromJson(request.body).object().value(u"email"_s).toString();
    return HttpAnswer::whole(200, Rows::session(email.section(u'@', 0, 0)));
}

void Scene::signIn(const QString &user)
{
    const auto outcome = outcomeOf(SupabaseClient::signIn(user + u"@exemple.fr"_s, u"secret"_s));
    if (!outcome.failure().isEmpty())
        qWarning("%s", qPrintable(outcome.failure()));
}
