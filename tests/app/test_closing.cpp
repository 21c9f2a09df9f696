// The window, or its sheet, closed while something is awaited: each flow is stopped at each of its
// requests, before the answer and some moments after it. Nothing falls over, nothing is sent twice,
// and the program ends.

#include "app/OstreloApp.h"
#include "support/AppMain.h"
#include "support/MembersWindow.h"

#include <QApplication>
#include <QPointer>
#include <QTimer>

#include <memory>
#include <vector>

using namespace Qt::StringLiterals;
using namespace WindowTest;
using namespace MembersWindow;

namespace {

enum class Flow { appear, reload, erase, create, change, signIn, signUp, signInAgain };

struct Told {
    Flow flow;
    const char *name;
    std::vector<QByteArray> requests; ///< one after the other, each awaited
    bool hasSheet; ///< that is open meanwhile
};
const Told flows[]{
    {Flow::appear, "the first load", {"GET /rest/"}, false},
    {Flow::reload, "another load", {"GET /rest/"}, false},
    {Flow::erase, "deleting", {"DELETE /rest/", "GET /rest/"}, false},
    {Flow::create, "a new event", {"POST /rest/", "GET /rest/"}, true},
    {Flow::change, "a change", {"PATCH /rest/", "GET /rest/"}, true},
    {Flow::signIn, "signing in", {"POST /auth/"}, true},
    {Flow::signUp, "signing up", {"POST /auth/"}, true},
    {Flow::signInAgain, "signing in from the menu", {"POST /auth/"}, false},
};

/// How often the event loop turns between the answer and the end; -1 for an end before it.
constexpr int turns[]{-1, 0, 1, 4};

bool isVisitor(Flow flow)
{
    return flow == Flow::signIn || flow == Flow::signUp || flow == Flow::signInAgain;
}

void turn(int count)
{
    for (int i = 0; i < count; ++i)
        QTest::qWait(1);
}

} // namespace

class TestClosing : public QObject {
    Q_OBJECT

    HttpServer &m_server;
    QList<QByteArray> m_awaited; ///< the requests up to the one whose answer waits
    bool m_isHeld = false;
    std::unique_ptr<OstreloApp> m_application;
    QPointer<ContentView> m_window; ///< frees itself when it closes

    HttpAnswer answer(const HttpRequest &request)
    {
        const HttpAnswer now = request.target.startsWith("/auth/") ? granting()
            : request.method == "GET" ? reply({row(u"mine"_s, 3, {{u"user_id"_s, u"moi"_s}})})
                                      : HttpAnswer::whole(204, "");
        if (m_awaited.isEmpty()
            || !(request.method + ' ' + request.target).startsWith(m_awaited.first()))
            return now;
        m_awaited.removeFirst();
        m_isHeld = m_awaited.isEmpty();
        return m_isHeld ? now.whenReleased() : now;
    }

    void hold(Flow flow, int request)
    {
        for (const Told &told : flows) {
            if (told.flow == flow)
                m_awaited = QList(told.requests.begin(), told.requests.begin() + request + 1);
        }
    }

    void openWindow()
    {
        m_application = std::make_unique<OstreloApp>();
        QTRY_VERIFY(qobject_cast<ContentView *>(QApplication::activeWindow()));
        m_window = qobject_cast<ContentView *>(QApplication::activeWindow());
    }

    void typeAccount()
    {
        QTest::keyClicks(field(sheet(m_window), u"Email"_s), u"a@b.fr"_s);
        QTest::keyClicks(field(sheet(m_window), u"Mot de passe"_s), u"secret"_s);
    }

    void press(Flow flow)
    {
        switch (flow) {
        case Flow::appear:
            break;
        case Flow::reload:
            QTest::keyClick(m_window, Qt::Key_F5);
            break;
        case Flow::erase:
            click(named(m_window, u"mine"_s), u"Supprimer"_s);
            QTRY_VERIFY(sheet(m_window) && sheet(m_window)->isActiveWindow());
            click(sheet(m_window), u"Supprimer"_s);
            break;
        case Flow::create:
            click(m_window, u"Ajouter un événement"_s);
            QVERIFY(sheet(m_window));
            click(sheet(m_window), u"Créer"_s);
            break;
        case Flow::change:
            click(named(m_window, u"mine"_s), u"Modifier"_s);
            QVERIFY(sheet(m_window));
            click(sheet(m_window), u"Enregistrer"_s);
            break;
        case Flow::signIn:
            click(m_window, u"Ajouter un compte"_s);
            QVERIFY(sheet(m_window));
            click(sheet(m_window), u"Connexion"_s);
            typeAccount();
            click(sheet(m_window), u"Se connecter"_s);
            break;
        case Flow::signUp:
            click(m_window, u"Ajouter un compte"_s);
            QVERIFY(sheet(m_window));
            typeAccount();
            QTest::mouseClick(createAccount(sheet(m_window)), Qt::LeftButton);
            break;
        case Flow::signInAgain:
            CredentialsStore::save({u"a@b.fr"_s, u"secret"_s});
            SupabaseClient::signOut(); // the window looks again
            QTRY_VERIFY(!button(m_window, u"Ajouter un compte"_s));
            click(m_window, u"Compte"_s);
            click(accountMenu(m_window), u"Se connecter"_s);
            break;
        }
    }

    /// Comes to where the flow's request of this number awaits its answer, and on from there.
    void advance(Flow flow, int request, int turnsAfter)
    {
        if (flow == Flow::appear) {
            hold(flow, request);
            openWindow();
        } else {
            openWindow();
            if (!isVisitor(flow))
                signInAs(u"a@b.fr"_s);
            QTRY_VERIFY(named(m_window, u"mine"_s));
            if (!isVisitor(flow))
                QTRY_VERIFY(button(named(m_window, u"mine"_s), u"Supprimer"_s));
            hold(flow, request);
            press(flow);
        }
        QTRY_VERIFY(m_isHeld);
        if (turnsAfter < 0)
            return;
        m_server.release();
        turn(turnsAfter);
    }

    void addRows(bool withSheet)
    {
        QTest::addColumn<Flow>("flow");
        QTest::addColumn<int>("request");
        QTest::addColumn<int>("turnsAfter");
        for (const Told &told : flows) {
            const int requests = withSheet ? 1 : static_cast<int>(told.requests.size());
            for (int request = 0; request < requests; ++request) {
                for (const int count : turns) {
                    if (withSheet && !told.hasSheet)
                        continue;
                    QTest::addRow("%s, request %d, %d turns after", told.name, request, count)
                        << told.flow << request << count;
                }
            }
        }
    }

    /// As a person does: a form that holds something is left first.
    void closeWindow()
    {
        if (m_window->close())
            return;
        click(sheet(m_window), u"Annuler"_s);
        QVERIFY(m_window->close());
    }

    int writes() const
    {
        return count(m_server, "POST") + count(m_server, "PATCH") + count(m_server, "DELETE");
    }

public:
    explicit TestClosing(HttpServer &server)
        : m_server(server)
    {
    }

private Q_SLOTS:
    void init()
    {
        m_awaited.clear();
        m_isHeld = false;
        m_server.answerWith([this](const HttpRequest &request) { return answer(request); });
        SupabaseClient::signOut();
        SupabaseClient::clearSavedCredentials();
    }
    void cleanup()
    {
        m_server.release();
        delete m_window;
        m_application.reset();
        // Who signs in is signed in, with or without a window, and not amid what is tried next.
        QFETCH(Flow, flow);
        if (m_isHeld && isVisitor(flow))
            QTRY_VERIFY(SupabaseClient::session().accessToken);
    }

    void theWindowMayCloseAtEveryWait_data() { addRows(false); }
    void theWindowMayCloseAtEveryWait()
    {
        QFETCH(Flow, flow);
        QFETCH(int, request);
        QFETCH(int, turnsAfter);
        const int before = writes();
        advance(flow, request, turnsAfter);
        QVERIFY(m_window);

        QTimer::singleShot(0, m_window, [this] { closeWindow(); });
        QTimer::singleShot(50, &m_server, &HttpServer::release);
        QTimer stuck;
        connect(&stuck, &QTimer::timeout, qApp, [] { QApplication::exit(1); });
        stuck.start(30'000);
        QCOMPARE(QApplication::exec(), 0);
        QVERIFY(!m_window);
        QCOMPARE(writes() - before, isVisitor(flow) || flow <= Flow::reload ? 0 : 1);
    }

    // As when the session ends.
    void theWindowMayGoAtEveryWait_data() { addRows(false); }
    void theWindowMayGoAtEveryWait()
    {
        QFETCH(Flow, flow);
        QFETCH(int, request);
        QFETCH(int, turnsAfter);
        advance(flow, request, turnsAfter);
        QVERIFY(m_window);
        delete m_window;
        m_server.release();
        // What comes now finds nobody; a memory checker would speak up here.
        turn(20);
    }

    void theSheetMayCloseAtEveryWait_data() { addRows(true); }
    void theSheetMayCloseAtEveryWait()
    {
        QFETCH(Flow, flow);
        QFETCH(int, request);
        QFETCH(int, turnsAfter);
        const int before = writes();
        advance(flow, request, turnsAfter);
        if (Sheet *const open = sheet(m_window))
            click(open, u"Annuler"_s);
        QVERIFY(!sheet(m_window));
        m_server.release();

        // What was asked for is done, and the window goes on.
        if (isVisitor(flow)) {
            QTRY_VERIFY(button(m_window, u"Ajouter un événement"_s));
        } else {
            QTRY_COMPARE(writes() - before, 1);
            QTRY_COMPARE(m_server.requests().last().method, "GET");
        }
        QTRY_VERIFY(named(m_window, u"mine"_s));
        QTest::keyClick(m_window, Qt::Key_F5);
        QTRY_VERIFY(named(m_window, u"mine"_s));
    }
};

int main(int argc, char *argv[])
{
    return runOnDesktop<TestClosing>(argc, argv);
}

#include "test_closing.moc"
