#include "support/ReaderProgram.h"
#include "support/WindowTest.h"

#include <algorithm>
#include <memory>

using AtSpi::Object;
using AtSpi::Role;
using AtSpi::State;
using WindowTest::reply;
using WindowTest::row;

// Nothing here is timed: this is how long a machine may be busy with other things.
#define EVENTUALLY(condition) QTRY_VERIFY_WITH_TIMEOUT(condition, 90'000)

/// The window as somebody meets it who does not see it.
class TestScreenReader : public QObject {
    Q_OBJECT
public:
    explicit TestScreenReader(const ReaderDesktop &desktop)
        : m_desktop(desktop)
    {
    }

private Q_SLOTS:
    void init();
    void cleanup();

    void everythingInTheWindowIsReadInItsRoleAndItsWords();
    void aLoadThatTakesLongSaysSo();
    void aFailureIsAnnounced();
    void theTabsChangeByTheirAction();
    void theWindowIsReadAsOneInFront();

private:
    void start() { m_program = std::make_unique<ReaderProgram>(m_desktop, *m_service); }
    Object program() const { return m_program->object(); }

    const ReaderDesktop &m_desktop;
    std::unique_ptr<HttpServer> m_service;
    std::unique_ptr<ReaderProgram> m_program;
};

void TestScreenReader::init()
{
    m_service = std::make_unique<HttpServer>();
}

void TestScreenReader::cleanup()
{
    QVERIFY(!m_program || m_program->isRunning());
    m_program.reset();
    m_service.reset();
}

void TestScreenReader::everythingInTheWindowIsReadInItsRoleAndItsWords()
{
    m_service->answer(reply({row(QStringLiteral("Marché"), 1)}));
    start();
    EVENTUALLY(m_program->list().isValid());
    const Object window = program().child(0);
    QCOMPARE(ReaderProgram::heard(window),
             (QStringList{
                 QStringLiteral("frame aMorvelle"),
                 QStringLiteral("heading amorvelle.fr"),
                 QStringLiteral("label Les événements à Morvelle et ses environs"),
                 QStringLiteral("button Ajouter un compte"),
                 QStringLiteral("button Compte"),
                 QStringLiteral("tab À venir"),
                 QStringLiteral("tab Passés"),
                 QStringLiteral("panel À venir"),
                 QStringLiteral("list"),
             }));
}

void TestScreenReader::theWindowIsReadAsOneInFront()
{
    start();
    EVENTUALLY(program().child(0).has(State::Active));
    QCOMPARE(program().child(0).name(), QStringLiteral("aMorvelle"));
}

void TestScreenReader::aLoadThatTakesLongSaysSo()
{
    m_service->answer(reply({row(QStringLiteral("Marché"), 1)}).whenReleased());
    start();
    const QString words = QStringLiteral("Loading events…");
    EVENTUALLY(program().find(Role::Notification, words).isValid());
    QVERIFY(!m_program->list().isValid());

    EVENTUALLY(!m_service->requests().isEmpty());
    m_service->release();
    EVENTUALLY(m_program->list().isValid());
    QVERIFY(!program().find(Role::Notification).isValid());
}

void TestScreenReader::aFailureIsAnnounced()
{
    m_service->answer(
        HttpAnswer::whole(500, R"({"message":"la base est en panne"})").whenReleased());
    AtSpi::Listener listener(m_desktop.bus());
    start();
    EVENTUALLY(program().find(Role::Notification).isValid());
    QVERIFY(!program().find(Role::Alert).isValid());

    EVENTUALLY(!m_service->requests().isEmpty());
    listener.forget();
    m_service->release();
    Object alert;
    EVENTUALLY((alert = program().find(Role::Alert)).isValid());
    QVERIFY(alert.name().startsWith(QStringLiteral("Failed to load events: ")));
    QVERIFY(alert.name().contains(QStringLiteral("la base est en panne")));
    EVENTUALLY(listener.hasHeard(alert, QStringLiteral("showing")));
}

void TestScreenReader::theTabsChangeByTheirAction()
{
    m_service->answer(reply({row(QStringLiteral("Hier"), -2), row(QStringLiteral("Demain"), 2)}));
    start();
    EVENTUALLY(m_program->list().isValid());
    const Object coming = program().find(Role::PageTab, QStringLiteral("À venir"));
    const Object past = program().find(Role::PageTab, QStringLiteral("Passés"));
    QVERIFY(coming.has(State::Selected));
    QVERIFY(!past.has(State::Selected));
    QCOMPARE(m_program->list().child(1).name(), QStringLiteral("Demain"));

    QVERIFY(past.act(QStringLiteral("Press")));
    EVENTUALLY(past.has(State::Selected));
    QVERIFY(!coming.has(State::Selected));
    EVENTUALLY(m_program->list().isValid());
    QCOMPARE(m_program->list().child(1).name(), QStringLiteral("Hier"));
    QVERIFY(program().find(Role::Panel, QStringLiteral("Passés")).isValid());
}

int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    const ReaderDesktop desktop;
    TestScreenReader test(desktop);
    return QTest::qExec(&test, argc, argv);
}
#include "test_screen_reader.moc"
