#include "look/Colors.h"
#include "support/AccessibleSession.h"
#include "support/Picture.h"
#include "support/ReaderProgram.h"
#include "support/StandInPortal.h"
#include "support/WaylandDesktop.h"
#include "support/WindowTest.h"

#include <memory>

using namespace Qt::StringLiterals;

using AtSpi::Object;
using AtSpi::Role;
using WindowTest::reply;
using WindowTest::row;

/// What the screen shows at a point, once it does.
#define EVENTUALLY_SHOWS(point, color)                                                             \
    do {                                                                                           \
        const QPoint place = point;                                                                \
        const QColor wanted = color;                                                               \
        const bool isSo = QTest::qWaitFor([&] { return alike(shown(place), wanted); }, 90'000);    \
        if (!isSo)                                                                                 \
            keepPicture();                                                                         \
        QVERIFY2(isSo,                                                                             \
                 qPrintable(u"at %1, %2 is %3, not %4"_s.arg(place.x()).arg(place.y()).arg(        \
                     shown(place).name(), wanted.name())));                                        \
    } while (false)

/// The real program on a Wayland compositor, by mouse and keyboard, and by what the screen shows.
class TestWayland : public QObject {
    Q_OBJECT

public:
    TestWayland(const AccessibleSession &session, WaylandDesktop &desktop)
        : m_session(session)
        , m_desktop(desktop)
    {
    }

private Q_SLOTS:
    void init();
    void cleanup();

    void aDetailHangsInItsWindowAndAClickBesideItDoesNothing();

private:
    HttpAnswer answer(const HttpRequest &request) const;
    void click(const Object &object) { m_desktop.pointer().click(onScreen(object).center()); }

    Object program() const { return m_program->object(); }
    Object find(Role role, const QString &name) const { return program().find(role, name); }
    /// Where an object is on the screen.
    QRect onScreen(const Object &object) const;
    QColor shown(QPoint point) const { return m_desktop.picture().pixelColor(point); }
    /// For whoever reads of the failure.
    void keepPicture() const;

    const QPalette m_light = applicationPalette(ColorScheme::Light);
    const AccessibleSession &m_session;
    WaylandDesktop &m_desktop;
    std::unique_ptr<StandInPortal> m_portal;
    std::unique_ptr<HttpServer> m_service;
    std::unique_ptr<ReaderProgram> m_program;
    QRect m_window;
};

void TestWayland::init()
{
    m_portal = std::make_unique<StandInPortal>(m_session.session(), 2);
    m_service = std::make_unique<HttpServer>();
    m_service->answerWith([this](const HttpRequest &request) { return answer(request); });
    m_program = std::make_unique<ReaderProgram>(m_session.bus(), *m_service, "wayland");
    EVENTUALLY(m_program->list().isValid());
    EVENTUALLY(!m_desktop.window().isNull());
    m_window = m_desktop.window();
    EVENTUALLY_SHOWS(m_window.topLeft() + QPoint(4, 4), windowColor(m_light));
}

void TestWayland::cleanup()
{
    QVERIFY(m_program && m_program->isRunning());
    const QStringList complaints = m_program->complaints();
    m_program.reset();
    m_service.reset();
    m_portal.reset();
    EVENTUALLY(m_desktop.window().isNull());
    QCOMPARE(complaints, QStringList());
}

HttpAnswer TestWayland::answer(const HttpRequest &request) const
{
    if (request.target.startsWith("/auth/"))
        return HttpAnswer::whole(
            200, R"({"access_token":"jeton","user":{"id":"moi","email":"a@exemple.fr"}})");
    if (request.method != "GET")
        return HttpAnswer::whole(201, "");
    return reply({row(u"Marché"_s, 1), row(u"Soirée soupe"_s, 2)});
}

QRect TestWayland::onScreen(const Object &object) const
{
    return object.place().translated(m_window.topLeft() - program().child(0).place().topLeft());
}

void TestWayland::keepPicture() const
{
    const QString file = QString::fromLatin1(QTest::currentTestFunction()) + u".png"_s;
    m_desktop.picture().save(file);
    qInfo("the screen is kept in %s", qPrintable(file));
}

void TestWayland::aDetailHangsInItsWindowAndAClickBesideItDoesNothing()
{
    const QPoint beside(m_window.left() + 20, m_window.bottom() - 40);
    const QPoint bottom(m_window.center().x(), m_window.bottom() - 4);
    const QPoint inCard(m_window.center().x(), m_window.top() + 4);
    const QColor dimmed = blended(dim(m_light), windowColor(m_light));

    click(m_program->list().child(1));
    Object sheet;
    EVENTUALLY((sheet = find(Role::Dialog, u"Marché"_s)).isValid());
    EVENTUALLY_SHOWS(bottom, dimmed);
    EVENTUALLY_SHOWS(m_window.topLeft() + QPoint(4, 4), dimmed);
    EVENTUALLY_SHOWS(inCard, windowColor(m_light));

    m_desktop.pointer().click(beside);
    m_desktop.pointer().click(m_window.topLeft() + QPoint(30, 30));
    const Object close = sheet.find(Role::PushButton, u"Fermer"_s);
    QVERIFY(close.has(AtSpi::State::Showing));
    EVENTUALLY_SHOWS(inCard, windowColor(m_light));
    EVENTUALLY_SHOWS(bottom, dimmed);

    m_desktop.key(u"Escape"_s);
    EVENTUALLY(!program().find(Role::Dialog).isValid());
    EVENTUALLY_SHOWS(bottom, windowColor(m_light));

    click(m_program->list().child(2));
    EVENTUALLY((sheet = find(Role::Dialog, u"Soirée soupe"_s)).isValid());
    EVENTUALLY_SHOWS(bottom, dimmed);
    click(sheet.find(Role::PushButton, u"Fermer"_s));
    EVENTUALLY(!program().find(Role::Dialog).isValid());
    EVENTUALLY_SHOWS(bottom, windowColor(m_light));
}

int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    const QStringList missing = WaylandDesktop::missing();
    if (!missing.isEmpty()) {
        qWarning("SKIPPED: no Wayland desktop without %s (packages.txt, group test)",
                 qPrintable(missing.join(u", "_s)));
        return 0;
    }
    const AccessibleSession session;
    WaylandDesktop desktop;
    TestWayland test(session, desktop);
    return QTest::qExec(&test, argc, argv);
}
#include "test_wayland.moc"
