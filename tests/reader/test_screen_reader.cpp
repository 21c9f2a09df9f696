#include "support/ReaderDesktop.h"
#include "support/ReaderProgram.h"
#include "support/WindowTest.h"

#include <algorithm>
#include <memory>

using namespace Qt::StringLiterals;

using AtSpi::Object;
using AtSpi::Role;
using AtSpi::State;
using WindowTest::reply;
using WindowTest::row;

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
    void whatOpensAMenuSaysSoAndWhetherItIsOpen();

private:
    void start() { m_program = std::make_unique<ReaderProgram>(m_desktop.bus(), *m_service); }
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
    m_service->answer(reply({row(u"Marché"_s, 1)}));
    start();
    EVENTUALLY(m_program->list().isValid());
    const Object window = program().child(0);
    QCOMPARE(ReaderProgram::heard(window),
             (QStringList{
                 u"frame aMorvelle"_s,
                 u"heading amorvelle.fr"_s,
                 u"label Les événements à Morvelle et ses environs"_s,
                 u"button Ajouter un compte"_s,
                 u"button Compte"_s,
                 u"tab À venir"_s,
                 u"tab Passés"_s,
                 u"list À venir"_s,
             }));
}

void TestScreenReader::theWindowIsReadAsOneInFront()
{
    start();
    EVENTUALLY(program().child(0).has(State::Active));
    QCOMPARE(program().child(0).name(), u"aMorvelle"_s);
}

void TestScreenReader::aLoadThatTakesLongSaysSo()
{
    m_service->answer(reply({row(u"Marché"_s, 1)}).whenReleased());
    start();
    const QString words = u"Loading events…"_s;
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
    const auto error = [](const Object &object) {
        return object.role() == Role::Notification
            && object.name().startsWith(u"Failed to load events: "_s);
    };
    QVERIFY(!program().find(error).isValid());

    EVENTUALLY(!m_service->requests().isEmpty());
    listener.forget();
    m_service->release();
    Object shown;
    EVENTUALLY((shown = program().find(error)).isValid());
    QVERIFY(shown.name().contains(u"la base est en panne"_s));
    EVENTUALLY(listener.hasHeard(shown, u"showing"_s));
}

void TestScreenReader::theTabsChangeByTheirAction()
{
    m_service->answer(reply({row(u"Hier"_s, -2), row(u"Demain"_s, 2)}));
    start();
    EVENTUALLY(m_program->list().isValid());
    const Object coming = program().find(Role::PageTab, u"À venir"_s);
    const Object past = program().find(Role::PageTab, u"Passés"_s);
    QVERIFY(coming.has(State::Selected));
    QVERIFY(!past.has(State::Selected));
    QCOMPARE(m_program->list().child(1).name(), u"Demain"_s);

    QVERIFY(past.act(u"Press"_s));
    EVENTUALLY(past.has(State::Selected));
    QVERIFY(!coming.has(State::Selected));
    EVENTUALLY(m_program->list().isValid());
    QCOMPARE(m_program->list().child(1).name(), u"Hier"_s);
    // No pane around the list that readers would read out as a whole.
    QVERIFY(!program().find(Role::Panel).isValid());
}

void TestScreenReader::whatOpensAMenuSaysSoAndWhetherItIsOpen()
{
    m_service->answer(reply({row(u"Marché"_s, 1)}));
    start();
    EVENTUALLY(m_program->list().isValid());
    const Object account = program().find(Role::PushButton, u"Compte"_s);
    QVERIFY(account.has(State::Expandable));
    QVERIFY(!account.has(State::Expanded));
    QVERIFY(account.act(u"Press"_s));
    EVENTUALLY(account.has(State::Expanded));
    const Object other = program().find(Role::PushButton, u"Ajouter un compte"_s);
    QVERIFY(!other.has(State::Expandable));
}

int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    const ReaderDesktop desktop;
    TestScreenReader test(desktop);
    return QTest::qExec(&test, argc, argv);
}
#include "test_screen_reader.moc"
