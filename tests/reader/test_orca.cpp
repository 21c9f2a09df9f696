#include "support/Orca.h"
#include "support/ReaderDesktop.h"
#include "support/ReaderProgram.h"
#include "support/WindowTest.h"

#include <memory>
#include <utility>

using namespace Qt::StringLiterals;

using AtSpi::Object;
using AtSpi::Role;
using WindowTest::reply;
using WindowTest::row;

/// Prints what was heard instead.
#define HEARS(words)                                                                               \
    do {                                                                                           \
        const bool isSaid = QTest::qWaitFor([&] { return m_orca->hasSaid(words); }, 90'000);       \
        QVERIFY2(isSaid, qPrintable(m_orca->heard().join(u" | "_s)));                              \
    } while (false)

/// What somebody hears who uses the window with the screen reader of Debian's desktops.
class TestOrca : public QObject {
    Q_OBJECT

public:
    explicit TestOrca(const ReaderDesktop &desktop)
        : m_desktop(desktop)
    {
    }

private Q_SLOTS:
    void init();
    void cleanup();

    void theWindowIsNamedWhenItOpens();
    void aFailedLoadIsSaidWithItsReason();
    void enteringTheListSaysTheRowAndNotTheWholeList();
    void anOpenedDetailIsReadWithDateTimeAndPlace();
    void aFieldOfTheFormIsSaidByItsName();
    void aRefusalIsSaidWithItsReason();
    void theFormOfAnEventSaysWhatItIsAndWhereOneStands();

private:
    void show(const QJsonArray &rows);
    void createAccount();
    Object program() const { return m_program->object(); }

    const ReaderDesktop &m_desktop;
    std::unique_ptr<Orca> m_orca;
    std::unique_ptr<HttpServer> m_service;
    std::unique_ptr<ReaderProgram> m_program;
    bool m_isKnown = false; ///< whether the service takes whoever signs up
};

void TestOrca::init()
{
    m_orca = std::make_unique<Orca>();
    m_service = std::make_unique<HttpServer>();
    m_isKnown = false;
}

void TestOrca::cleanup()
{
    QVERIFY(m_program && m_program->isRunning());
    m_program.reset();
    m_service.reset();
    m_orca.reset();
}

void TestOrca::show(const QJsonArray &rows)
{
    m_service->answerWith([this, rows](const HttpRequest &request) {
        if (request.method == "GET")
            return reply(rows);
        return m_isKnown
            ? HttpAnswer::whole(200, R"({"access_token":"jeton","user":{"id":"moi"}})")
            : HttpAnswer::whole(400, R"({"error_description":"Ce compte est inconnu"})");
    });
    m_program = std::make_unique<ReaderProgram>(m_desktop.bus(), *m_service);
    EVENTUALLY(m_program->list().isValid());
    HEARS(u"aMorvelle"_s);
}

void TestOrca::theWindowIsNamedWhenItOpens()
{
    show({row(u"Marché"_s, 1)});
    HEARS(u"aMorvelle frame"_s);
}

void TestOrca::aFailedLoadIsSaidWithItsReason()
{
    m_service->answer(HttpAnswer::whole(500, R"({"message":"la base est en panne"})"));
    m_program = std::make_unique<ReaderProgram>(m_desktop.bus(), *m_service);
    HEARS(u"Failed to load events: "_s);
    HEARS(u"la base est en panne"_s);
}

void TestOrca::enteringTheListSaysTheRowAndNotTheWholeList()
{
    QJsonArray rows;
    for (int i = 0; i < 40; ++i)
        rows.append(row(u"Soirée soupe numéro %1"_s.arg(i), 1 + i,
                        {{u"description"_s, u"Chacun apporte un bol et une cuillère."_s},
                         {u"date_texte"_s, u"samedi 6 mai"_s}}));
    show(rows);
    const Object item = m_program->list().child(1);
    m_orca->forget();
    QVERIFY(item.grabFocus());
    HEARS(u"Soirée soupe numéro 0"_s);
    // Whatever else it says of the way there comes before what it says of the way on.
    QVERIFY(program().find(Role::PushButton, u"Compte"_s).grabFocus());
    HEARS(u"Compte"_s);
    QVERIFY2(m_orca->hasSaid(u"List with 40 items"_s), qPrintable(m_orca->heard().join(u" | "_s)));
    QVERIFY2(m_orca->wordsHeard() <= 30, qPrintable(m_orca->heard().join(u" | "_s)));
    QVERIFY(!m_orca->hasSaid(u"numéro 1"_s));
}

void TestOrca::anOpenedDetailIsReadWithDateTimeAndPlace()
{
    show({row(u"Soirée soupe"_s, 3,
              {{u"date_texte"_s, u"2026-11-14"_s},
               {u"heure_texte"_s, u"19:00"_s},
               {u"lieu"_s, u"Vaudrelle"_s}})});
    m_orca->forget();
    QVERIFY(m_program->list().child(1).act(u"Press"_s));
    HEARS(u"Soirée soupe"_s);
    HEARS(u"2026-11-14"_s);
    HEARS(u"19:00"_s);
    HEARS(u"Vaudrelle"_s);
}

void TestOrca::aFieldOfTheFormIsSaidByItsName()
{
    show({row(u"Marché"_s, 1)});
    m_orca->forget();
    QVERIFY(program().find(Role::PushButton, u"Ajouter un compte"_s).act(u"Press"_s));
    HEARS(u"Compte aMorvelle"_s);
    HEARS(u"Email"_s);
}

void TestOrca::createAccount()
{
    QVERIFY(program().find(Role::PushButton, u"Ajouter un compte"_s).act(u"Press"_s));
    Object form;
    EVENTUALLY((form = program().find(Role::Dialog)).isValid());
    // Nobody types before hearing where; and it drops what it is told while the focus moves.
    HEARS(u"Email text"_s);
    for (const auto &[name, text] :
         {std::pair{u"Email"_s, u"a@exemple.fr"_s}, std::pair{u"Mot de passe"_s, u"secret"_s}}) {
        const Object field = form.find([&name = name](const Object &object) {
            return object.name() == name && object.role() != Role::Label;
        });
        QVERIFY(field.enter(text));
    }
    m_orca->forget();
    const Object button = form.find(Role::PushButton, u"Créer un compte"_s);
    QVERIFY(button.act(u"Press"_s));
}

void TestOrca::aRefusalIsSaidWithItsReason()
{
    show({row(u"Marché"_s, 1)});
    createAccount();
    HEARS(u"Ce compte est inconnu"_s);
}

void TestOrca::theFormOfAnEventSaysWhatItIsAndWhereOneStands()
{
    m_isKnown = true;
    show({row(u"Marché"_s, 1)});
    createAccount();
    Object add;
    EVENTUALLY((add = program().find(Role::PushButton, u"Ajouter un événement"_s)).isValid());
    m_orca->forget();
    QVERIFY(add.act(u"Press"_s));
    HEARS(u"Ajouter un événement dialog"_s);
    HEARS(u"Titre"_s);
    HEARS(u"Atelier création"_s);
}

int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    const QStringList missing = Orca::missing();
    if (!missing.isEmpty())
        qFatal("needs %s (packages.txt, group listen)", qPrintable(missing.join(u", "_s)));
    const ReaderDesktop desktop;
    TestOrca test(desktop);
    return QTest::qExec(&test, argc, argv);
}
#include "test_orca.moc"
