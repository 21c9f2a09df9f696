// The program on a real screen: keys that are really held down, and links that really leave it.

#include "support/ReaderDesktop.h"
#include "support/ReaderProgram.h"
#include "support/WindowTest.h"

#include <QFile>
#include <QTemporaryDir>

#include <memory>

using namespace Qt::StringLiterals;

using AtSpi::Object;
using AtSpi::Role;
using AtSpi::State;
using WindowTest::reply;
using WindowTest::row;

// Nothing here is timed: this is how long a machine may be busy with other things.
#define EVENTUALLY(condition) QTRY_VERIFY_WITH_TIMEOUT(condition, 90'000)

namespace {

const QString press = u"Press"_s;

/// What stands on the desktop for whatever opens pages: it writes down what it was asked for.
class StandInBrowser {
public:
    StandInBrowser()
    {
        QFile program(m_folder.filePath(u"xdg-open"_s));
        if (!program.open(QIODevice::WriteOnly))
            qFatal("cannot write the stand-in for xdg-open");
        program.write("#!/bin/sh\nprintf '%s\\n' \"$1\" >> '" + QFile::encodeName(log()) + "'\n");
        program.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        qputenv("PATH", QFile::encodeName(m_folder.path()) + ':' + qgetenv("PATH"));
    }

    QStringList opened() const
    {
        QFile file(log());
        if (!file.open(QIODevice::ReadOnly))
            return {};
        return QString::fromUtf8(file.readAll()).split(u'\n', Qt::SkipEmptyParts);
    }
    void forget() const { QFile::remove(log()); }

private:
    QString log() const { return m_folder.filePath(u"opened"_s); }

    QTemporaryDir m_folder;
};

void keyboard(const QString &what, const QStringList &keys)
{
    if (QProcess::execute(u"xdotool"_s, QStringList{what} + keys) != 0)
        qFatal("xdotool cannot %s %s", qPrintable(what), qPrintable(keys.join(u' ')));
}

/// Holds the keys down as long as a slow finger does. A shorter time would make a fault go unseen,
/// never a failure of what is right; that keys do repeat here, aHeldArrowWalksOn() shows.
void hold(const QStringList &keys)
{
    keyboard(u"keydown"_s, keys);
    QTest::qWait(1500);
    keyboard(u"keyup"_s, keys);
}

} // namespace

class TestRealKeys : public QObject {
    Q_OBJECT

public:
    TestRealKeys(const ReaderDesktop &desktop, const StandInBrowser &browser)
        : m_desktop(desktop)
        , m_browser(browser)
    {
    }

private Q_SLOTS:
    void init();
    void cleanup();

    void aHeldArrowWalksOn();
    void aHeldF5LoadsOnce();
    void aHeldShortcutOpensOneWindow();
    void aHeldReturnSignsUpOnce();
    void aHeldReturnOpensTheEventAndNoPage();
    void aHeldKeyOpensOnePage();
    void onlyWhatIsAPageLeavesTheWindow();

private:
    /// Starts the program and returns when it shows these rows and has the keyboard.
    void show(const QJsonArray &rows);
    Object program() const { return m_program->object(); }
    int windows() const;
    int asked(const QByteArray &method) const;
    /// Opens the event that the list shows at `index`, headings counted, and returns its sheet.
    Object open(int index) const;

    const ReaderDesktop &m_desktop;
    const StandInBrowser &m_browser;
    std::unique_ptr<HttpServer> m_service;
    std::unique_ptr<ReaderProgram> m_program;
};

void TestRealKeys::init()
{
    m_service = std::make_unique<HttpServer>();
    m_browser.forget();
}

void TestRealKeys::cleanup()
{
    QVERIFY(!m_program || m_program->isRunning());
    m_program.reset();
    m_service.reset();
}

void TestRealKeys::show(const QJsonArray &rows)
{
    m_service->answerWith([rows](const HttpRequest &request) {
        // Refused at once: what was pressed can be pressed again while the key is still down.
        return request.method == "GET" ? reply(rows) : HttpAnswer::whole(400, R"({"msg":"non"})");
    });
    m_program = std::make_unique<ReaderProgram>(m_desktop.bus(), *m_service);
    EVENTUALLY(m_program->list().isValid());
    EVENTUALLY(program().child(0).has(State::Active));
}

int TestRealKeys::windows() const
{
    int shown = 0;
    const auto all = program().children();
    for (const Object &window : all)
        shown += window.role() == Role::Frame && window.has(State::Showing) ? 1 : 0;
    return shown;
}

int TestRealKeys::asked(const QByteArray &method) const
{
    int found = 0;
    for (const HttpRequest &request : m_service->requests())
        found += request.method == method ? 1 : 0;
    return found;
}

Object TestRealKeys::open(int index) const
{
    Object sheet;
    m_program->list().child(index).act(press);
    (void)QTest::qWaitFor([&] { return (sheet = program().find(Role::Dialog)).isValid(); }, 90'000);
    return sheet;
}

void TestRealKeys::aHeldArrowWalksOn()
{
    QJsonArray rows;
    for (int i = 0; i < 8; ++i)
        rows.append(row(u"event %1"_s.arg(i), 0));
    show(rows);
    const Object list = m_program->list();
    QVERIFY(list.child(1).grabFocus());
    EVENTUALLY(list.child(1).has(State::Focused));
    keyboard(u"keydown"_s, {u"Down"_s});
    EVENTUALLY(m_program->list().child(8).has(State::Focused));
    keyboard(u"keyup"_s, {u"Down"_s});
}

void TestRealKeys::aHeldF5LoadsOnce()
{
    show({row(u"fête"_s, 1)});
    const int before = asked("GET");
    hold({u"F5"_s});
    EVENTUALLY(m_program->list().isValid());
    QCOMPARE(asked("GET"), before + 1);
    hold({u"Control_L"_s, u"r"_s});
    EVENTUALLY(m_program->list().isValid());
    QCOMPARE(asked("GET"), before + 2);
}

void TestRealKeys::aHeldShortcutOpensOneWindow()
{
    show({row(u"fête"_s, 1)});
    QCOMPARE(windows(), 1);
    hold({u"Control_L"_s, u"n"_s});
    EVENTUALLY(windows() >= 2);
    QCOMPARE(windows(), 2);
    QCOMPARE(asked("GET"), 2);
}

void TestRealKeys::aHeldReturnSignsUpOnce()
{
    show({row(u"fête"_s, 1)});
    QVERIFY(program().find(Role::PushButton, u"Ajouter un compte"_s).act(press));
    Object form;
    EVENTUALLY((form = program().find(Role::Dialog)).isValid());
    EVENTUALLY(form.find(Role::Text, u"Email"_s).has(State::Focused));
    keyboard(u"type"_s, {u"ab"_s});
    keyboard(u"key"_s, {u"Tab"_s});
    EVENTUALLY(!form.find(Role::Text, u"Email"_s).has(State::Focused));
    keyboard(u"type"_s, {u"secret"_s});
    const Object create = form.find(Role::PushButton, u"Créer un compte"_s);
    EVENTUALLY(create.grabFocus());
    EVENTUALLY(create.has(State::Focused));
    hold({u"Return"_s});
    EVENTUALLY(asked("POST") >= 1);
    QCOMPARE(asked("POST"), 1);
}

void TestRealKeys::aHeldReturnOpensTheEventAndNoPage()
{
    show({row(u"fête"_s, 1, {{u"link"_s, u"https://exemple.fr/a"_s}})});
    QVERIFY(m_program->list().child(1).grabFocus());
    EVENTUALLY(m_program->list().child(1).has(State::Focused));
    hold({u"Return"_s});
    Object sheet;
    EVENTUALLY((sheet = program().find(Role::Dialog)).isValid());
    QVERIFY(sheet.find(Role::Link).act(press));
    EVENTUALLY(!m_browser.opened().isEmpty());
    QCOMPARE(m_browser.opened(), QStringList(u"https://exemple.fr/a"_s));
}

void TestRealKeys::aHeldKeyOpensOnePage()
{
    show({row(u"fête"_s, 1, {{u"link"_s, u"https://exemple.fr/a"_s}})});
    const Object sheet = open(1);
    QVERIFY(sheet.isValid());
    const Object link = sheet.find(Role::Link);
    QVERIFY(link.grabFocus());
    EVENTUALLY(link.has(State::Focused));
    hold({u"Return"_s});
    EVENTUALLY(!m_browser.opened().isEmpty());
    hold({u"space"_s});
    EVENTUALLY(m_browser.opened().size() >= 2);
    QCOMPARE(m_browser.opened(), QStringList(2, u"https://exemple.fr/a"_s));
}

void TestRealKeys::onlyWhatIsAPageLeavesTheWindow()
{
    const QStringList links{u"/etc/passwd"_s,
                            u"file:///etc/passwd"_s,
                            u"etc/passwd"_s,
                            u"javascript:alert(1)"_s,
                            u"samedi"_s,
                            u"www.exemple.fr/fete"_s,
                            u"//localhost/etc/passwd"_s,
                            u"https://exemple.fr/%C3%A9t%C3%A9"_s};
    QJsonArray rows;
    for (const QString &link : links)
        rows.append(row(link, 0, {{u"link"_s, link}}));
    show(rows);
    for (int i = 0; i < links.size(); ++i) {
        const Object sheet = open(i + 1);
        QVERIFY(sheet.isValid());
        QCOMPARE(sheet.name(), links[i]);
        QVERIFY2(sheet.find(Role::Link).act(press), qPrintable(links[i]));
        QVERIFY(sheet.find(Role::PushButton, u"Fermer"_s).act(press));
        EVENTUALLY(!program().find(Role::Dialog).isValid());
    }
    const QStringList pages{u"https://www.exemple.fr/fete"_s,
                            u"https://exemple.fr/%C3%A9t%C3%A9"_s};
    EVENTUALLY(m_browser.opened().size() >= pages.size());
    QStringList opened = m_browser.opened();
    opened.sort(); // each by a process of its own
    QCOMPARE(opened, QStringList({pages[1], pages[0]}));
}

int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    const StandInBrowser browser;
    const ReaderDesktop desktop;
    TestRealKeys test(desktop, browser);
    return QTest::qExec(&test, argc, argv);
}
#include "test_real_keys.moc"
