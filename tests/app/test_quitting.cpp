// What is still on its way when the last window closes.

#include "app/OstreloApp.h"
#include "support/AppMain.h"
#include "support/MembersWindow.h"

#include <QApplication>
#include <QSignalSpy>
#include <QTimer>

#include <memory>

using namespace Qt::StringLiterals;
using namespace WindowTest;
using namespace MembersWindow;

class TestQuitting : public QObject {
    Q_OBJECT

    HttpServer &m_server;
    HttpAnswer m_toDelete = HttpAnswer::whole(204, "");
    HttpAnswer m_toSignIn = granting();
    HttpAnswer m_toLoad;
    std::unique_ptr<OstreloApp> m_application;
    ContentView *m_window = nullptr; // frees itself when it closes

    /// Presses the bin and confirms, and returns when the service has heard of it.
    void beginDelete()
    {
        const int before = count(m_server, "DELETE");
        click(named(m_window, u"mine"_s), u"Supprimer"_s);
        QTRY_VERIFY(sheet(m_window) && sheet(m_window)->isActiveWindow());
        click(sheet(m_window), u"Supprimer"_s);
        QTRY_COMPARE(count(m_server, "DELETE"), before + 1);
    }

    /// Closes the window and runs the program to its end.
    int closeAndRun()
    {
        QTimer::singleShot(0, m_window, &QWidget::close);
        return QApplication::exec();
    }

public:
    explicit TestQuitting(HttpServer &server)
        : m_server(server)
    {
    }

private Q_SLOTS:
    void init()
    {
        m_toDelete = HttpAnswer::whole(204, "");
        m_toSignIn = granting();
        m_toLoad = reply({row(u"mine"_s, 3, {{u"user_id"_s, u"moi"_s}})});
        m_server.answerWith([this](const HttpRequest &request) {
            if (request.method == "GET")
                return m_toLoad;
            return request.method == "DELETE" ? m_toDelete : m_toSignIn;
        });
        m_application = std::make_unique<OstreloApp>();
        QTRY_VERIFY(qobject_cast<ContentView *>(QApplication::activeWindow()));
        m_window = qobject_cast<ContentView *>(QApplication::activeWindow());
        signInAs(u"a@b.fr"_s);
        QTRY_VERIFY(named(m_window, u"mine"_s));
        QTRY_VERIFY(button(named(m_window, u"mine"_s), u"Supprimer"_s));
    }
    void cleanup() { m_application.reset(); }

    void withNothingOnItsWayTheProgramEnds() { QCOMPARE(closeAndRun(), 0); }

    void aWriteIsAnsweredBeforeTheProgramEnds()
    {
        m_toDelete = HttpAnswer::whole(204, "").late(300);
        beginDelete();
        const QSignalSpy answered(&m_server, &HttpServer::answered);
        QCOMPARE(closeAndRun(), 0);
        QCOMPARE(answered.count(), 1);
    }

    void aSignUpIsAnsweredBeforeTheProgramEnds()
    {
        m_toSignIn = granting().late(300);
        const int before = count(m_server, "POST", "/auth/v1/signup");
        Outcome<void> outcome;
        const auto noting = note(SupabaseClient::signUp(u"c@d.fr"_s, u"secret"_s), outcome);
        QTRY_COMPARE(count(m_server, "POST", "/auth/v1/signup"), before + 1);
        QCOMPARE(closeAndRun(), 0);
        QVERIFY(outcome.value);
    }

    void aLoadIsDroppedAtOnce()
    {
        m_toLoad = HttpAnswer::silence();
        const int before = count(m_server, "GET");
        QTest::keyClick(m_window, Qt::Key_F5);
        QTRY_COMPARE(count(m_server, "GET"), before + 1);
        // Less than what a write would be granted.
        QTimer patience;
        patience.setSingleShot(true);
        patience.start(4000);
        QCOMPARE(closeAndRun(), 0);
        QVERIFY(patience.isActive());
    }

    // The last of them: the write it leaves behind is never over.
    void aWriteThatIsNeverAnsweredDoesNotHoldTheProgramForEver()
    {
        m_toDelete = HttpAnswer::silence();
        beginDelete();
        QTimer patience;
        patience.setSingleShot(true);
        patience.start(3000);
        QCOMPARE(closeAndRun(), 0);
        QVERIFY(!patience.isActive());
    }
};

int main(int argc, char *argv[])
{
    return runOnDesktop<TestQuitting>(argc, argv);
}

#include "test_quitting.moc"
