#include "look/Colors.h"
#include "support/AccessibleSession.h"
#include "support/Picture.h"
#include "support/ReaderProgram.h"
#include "support/StandInPortal.h"
#include "support/WaylandDesktop.h"
#include "support/WindowTest.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

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
    void theFormsMenuAndCalendarDropFromTheirControls();
    void theAccountMenuHangsFromItsButton();
    void theColoursFollowTheDesktop();

private:
    HttpAnswer answer(const HttpRequest &request);
    void signIn();
    void typeInto(const QString &field, const QString &text);
    static Object picker(const Object &form, const QString &name);
    void click(const Object &object) { m_desktop.pointer().click(onScreen(object).center()); }

    Object program() const { return m_program->object(); }
    Object find(Role role, const QString &name) const { return program().find(role, name); }
    /// Where an object is on the screen.
    QRect onScreen(const Object &object) const;
    QColor shown(QPoint point) const { return m_desktop.picture().pixelColor(point); }
    /// For whoever reads of the failure.
    void keepPicture() const;

    const QPalette m_light = applicationPalette(ColorScheme::Light);
    const QPalette m_dark = applicationPalette(ColorScheme::Dark);
    const AccessibleSession &m_session;
    WaylandDesktop &m_desktop;
    std::unique_ptr<StandInPortal> m_portal;
    std::unique_ptr<HttpServer> m_service;
    std::unique_ptr<ReaderProgram> m_program;
    QRect m_window;
    QJsonObject m_created; ///< the event that was last sent
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
    QStringList complaints = m_program->complaints();
    // What newer toolkits say of a compositor that has no keyboard.
    complaints.removeAll(u"qt.qpa.wayland: unknown keymap format: 0"_s);
    m_program.reset();
    m_service.reset();
    m_portal.reset();
    EVENTUALLY(m_desktop.window().isNull());
    QCOMPARE(complaints, QStringList());
}

HttpAnswer TestWayland::answer(const HttpRequest &request)
{
    if (request.target.startsWith("/auth/"))
        return HttpAnswer::whole(
            200, R"({"access_token":"jeton","user":{"id":"moi","email":"a@exemple.fr"}})");
    if (request.method != "GET") {
        m_created = QJsonDocument::fromJson(request.body).object();
        return HttpAnswer::whole(201, "");
    }
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

void TestWayland::typeInto(const QString &field, const QString &text)
{
    Object entry;
    EVENTUALLY((entry = program().find([&](const Object &object) {
                   return object.name() == field && object.role() != Role::Label;
               })).isValid());
    click(entry);
    EVENTUALLY(entry.has(AtSpi::State::Focused));
    QVERIFY(entry.enter(QString())); // a form opens with examples
    m_desktop.type(text);
}

Object TestWayland::picker(const Object &form, const QString &name)
{
    return form.find([&](const Object &object) {
        return object.name() == name && object.actions().contains(u"Press"_s);
    });
}

void TestWayland::signIn()
{
    click(find(Role::PushButton, u"Ajouter un compte"_s));
    typeInto(u"Email"_s, u"a@exemple.fr"_s);
    typeInto(u"Mot de passe"_s, u"secret"_s);
    click(find(Role::PushButton, u"Créer un compte"_s)); // not the segment of this name
    EVENTUALLY(find(Role::PushButton, u"Ajouter un événement"_s).isValid());
    EVENTUALLY(!program().find(Role::Dialog).isValid());
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

void TestWayland::theFormsMenuAndCalendarDropFromTheirControls()
{
    signIn();
    const QDate opened = QDate::currentDate();
    click(find(Role::PushButton, u"Ajouter un événement"_s));
    Object form;
    EVENTUALLY((form = find(Role::Dialog, u"Ajouter un événement"_s)).isValid());
    const QColor card = windowColor(m_light);
    EVENTUALLY_SHOWS(QPoint(m_window.center().x(), m_window.top() + 4), card);
    typeInto(u"Titre"_s, u"Fête"_s);

    // A popup hangs a little below its control, flush with its left edge, over fields that are
    // white as it is: looked for is the card between them, and what it covers.
    const Object tags = picker(form, u"Tags"_s);
    const QPoint inMenu = onScreen(tags).bottomLeft() + QPoint(8, 1 + 4 + 4);
    EVENTUALLY_SHOWS(inMenu, card);
    click(tags);
    EVENTUALLY_SHOWS(inMenu, popupColor(m_light));
    QVERIFY(!alike(shown(inMenu - QPoint(0, 7)), popupColor(m_light)));
    m_desktop.key(u"Down"_s);
    m_desktop.key(u"Return"_s);
    EVENTUALLY_SHOWS(inMenu, card);

    // The calendar reaches out of the window.
    const QColor outside = shown(m_window.bottomLeft() + QPoint(20, 20));
    const Object opener = picker(form, u"Calendrier"_s);
    const Object date = opener.parent();
    QVERIFY(date.grabFocus()); // which scrolls it into view
    EVENTUALLY(date.has(AtSpi::State::Focused));
    const QPoint inCalendar(onScreen(date).left() + 8, m_window.bottom() + 20);
    EVENTUALLY_SHOWS(inCalendar, outside);
    click(opener);
    EVENTUALLY_SHOWS(inCalendar, popupColor(m_light));
    m_desktop.key(u"Right"_s);
    m_desktop.key(u"Return"_s);
    EVENTUALLY_SHOWS(inCalendar, outside);
    QVERIFY(form.has(AtSpi::State::Showing));

    click(form.find(Role::PushButton, u"Créer"_s));
    EVENTUALLY(!program().find(Role::Dialog).isValid());
    QCOMPARE(m_created.value(u"titre"_s).toString(), u"Fête"_s);
    QVERIFY(m_created.value(u"tags"_s).toArray().contains(u"Vie du village"_s));
    QCOMPARE(m_created.value(u"date_texte"_s).toString(),
             opened.addDays(1).toString(u"yyyy-MM-dd"_s));
}

void TestWayland::theAccountMenuHangsFromItsButton()
{
    signIn();
    const QRect button = onScreen(find(Role::PushButton, u"Compte"_s));
    // Right edges in line, 6 below the button.
    const QPoint inCorner(button.right() - 8, button.bottom() + 1 + 6 + 4);
    click(find(Role::PushButton, u"Compte"_s));
    EVENTUALLY_SHOWS(inCorner, popupColor(m_light));
    EVENTUALLY_SHOWS(inCorner - QPoint(200, 0), popupColor(m_light));
    // The toolkit shows readers no popup but through its focus: by the keyboard, then.
    m_desktop.key(u"Tab"_s);
    m_desktop.key(u"Return"_s);
    EVENTUALLY(!find(Role::PushButton, u"Ajouter un événement"_s).isValid());
    EVENTUALLY_SHOWS(QPoint(button.right() - 8, m_window.top() + 8), windowColor(m_light));
}

void TestWayland::theColoursFollowTheDesktop()
{
    signIn();
    const QRect button = onScreen(find(Role::PushButton, u"Compte"_s));
    const QPoint inPopover(button.right() - 8, button.bottom() + 1 + 6 + 4);
    const QPoint inWindow = m_window.topLeft() + QPoint(4, 4);
    click(find(Role::PushButton, u"Compte"_s));
    EVENTUALLY_SHOWS(inPopover, popupColor(m_light));
    m_portal->change(1);
    EVENTUALLY_SHOWS(inPopover, popupColor(m_dark));
    EVENTUALLY_SHOWS(inWindow, windowColor(m_dark));
    m_portal->change(2);
    EVENTUALLY_SHOWS(inPopover, popupColor(m_light));
    EVENTUALLY_SHOWS(inWindow, windowColor(m_light));
    m_desktop.key(u"Escape"_s);
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
