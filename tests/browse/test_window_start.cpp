// What a window does as it opens: forget, sign in, load, in this order.

#include "platform/NotificationCenter.h"
#include "support/MembersWindow.h"

#include <utility>

using namespace Qt::StringLiterals;
using namespace WindowTest;
using namespace MembersWindow;

namespace {

/// Remembers an account as soon as a window has forgotten the one before, and before the window
/// does anything else: as another program of the same user may.
class Rememberer : public QObject {
    Q_OBJECT

public:
    Rememberer()
    {
        connect(&NotificationCenter::defaultCenter(), &NotificationCenter::posted, this, [this] {
            if (std::exchange(m_isDone, true))
                return;
            QVERIFY(!CredentialsStore::loadCredentials());
            CredentialsStore::save({u"a@b.fr"_s, u"secret"_s});
        });
    }

private:
    bool m_isDone = false;
};

} // namespace

class TestWindowStart : public QObject {
    Q_OBJECT

    HttpServer &m_server;
    qsizetype m_before = 0;

    QByteArrayList asked() const
    {
        QByteArrayList targets;
        for (const HttpRequest &request : m_server.requests().sliced(m_before)) {
            targets.append(request.method + ' '
                           + request.target.first(request.target.indexOf('/', 1)));
        }
        return targets;
    }
    /// Signing in is answered thus, and the load with one row.
    void answerSignIn(const HttpAnswer &answer)
    {
        m_server.answerWith([answer](const HttpRequest &request) {
            return request.method == "GET" ? reply({row(u"mine"_s, 3, {{u"user_id"_s, u"moi"_s}})})
                                           : answer;
        });
    }

public:
    explicit TestWindowStart(HttpServer &server)
        : m_server(server)
    {
    }

private Q_SLOTS:
    void init()
    {
        SupabaseClient::signOut();
        SupabaseClient::clearSavedCredentials();
        m_before = m_server.requests().size();
    }

    void aRememberedMemberIsSignedInBeforeTheEventsAreLoaded()
    {
        answerSignIn(granting().whenReleased());
        const Rememberer rememberer;
        const auto window = shownWindow();
        QTRY_COMPARE(asked(), QByteArrayList({"POST /auth"}));
        const HttpRequest &request = m_server.requests().last();
        QCOMPARE(request.target, "/auth/v1/token?grant_type=password");
        QVERIFY(request.body.contains("a@b.fr") && request.body.contains("secret"));

        // The load waits for the answer, and says so.
        QTest::qWait(50);
        QCOMPARE(asked(), QByteArrayList({"POST /auth"}));
        QVERIFY(named(window.get(), u"Loading events…"_s));
        m_server.release();
        QTRY_VERIFY(named(window.get(), u"mine"_s));
        QCOMPARE(asked(), QByteArrayList({"POST /auth", "GET /rest"}));
        QCOMPARE(m_server.requests().last().header("Authorization"), "Bearer jeton");
        QVERIFY(button(named(window.get(), u"mine"_s), u"Modifier"_s));
        QVERIFY(button(window.get(), u"Ajouter un événement"_s));
    }

    void aRefusedSignInAtTheStartIsSilentAndTheEventsAreLoaded()
    {
        answerSignIn(HttpAnswer::whole(400, R"({"error":"no"})"));
        const Rememberer rememberer;
        const auto window = shownWindow();
        QTRY_VERIFY(named(window.get(), u"mine"_s));
        QCOMPARE(asked(), QByteArrayList({"POST /auth", "GET /rest"}));
        QVERIFY(!sheet(window.get()));
        QVERIFY(!button(window.get(), u"Ajouter un événement"_s));
    }

    void theSignInAtTheStartIsTriedOnceAWindow()
    {
        answerSignIn(granting());
        const Rememberer rememberer;
        const auto window = shownWindow();
        QTRY_VERIFY(named(window.get(), u"mine"_s));
        window->hide();
        window->show();
        QTRY_COMPARE(asked(), QByteArrayList({"POST /auth", "GET /rest", "GET /rest"}));
    }

    void aFailedLoadKeepsThePlaceInTheList()
    {
        QJsonArray rows;
        for (int i = 0; i < 100; ++i)
            rows.append(row(u"event %1"_s.arg(i), 1 + i));
        m_server.answer(reply(rows));
        const auto window = shownWindow();
        QTRY_VERIFY(named(window.get(), u"event 0"_s));
        shownList(window.get())->showRow(60);
        QWidget *seen = nullptr;
        QTRY_VERIFY((seen = named(window.get(), u"event 60"_s)));
        const int y = seen->mapTo(window.get(), QPoint()).y();

        m_server.answer(HttpAnswer::whole(503, {}));
        QTest::keyClick(window.get(), Qt::Key_F5);
        QTRY_VERIFY(named(window.get(), u"Failed to load events: HTTP 503"_s));
        m_server.answer(reply(rows));
        QTest::keyClick(window.get(), Qt::Key_F5);
        QTRY_VERIFY((seen = named(window.get(), u"event 60"_s)));
        QCOMPARE(seen->mapTo(window.get(), QPoint()).y(), y);
    }

    void thePastIsReadFromTheLatestBackwards()
    {
        m_server.answer(reply({
            row(u"january"_s, 0, {{u"starts_at"_s, u"2001-01-20T10:00:00+00:00"_s}}),
            row(u"february, early"_s, 0, {{u"starts_at"_s, u"2001-02-02T10:00:00+00:00"_s}}),
            row(u"february, late"_s, 0, {{u"starts_at"_s, u"2001-02-20T10:00:00+00:00"_s}}),
            row(u"the year before"_s, 0, {{u"starts_at"_s, u"2000-02-20T10:00:00+00:00"_s}}),
        }));
        const auto window = shownWindow();
        QTRY_VERIFY(named(window.get(), u"Passés"_s));
        QTest::mouseClick(named(window.get(), u"Passés"_s), Qt::LeftButton);
        QTRY_VERIFY(named(window.get(), u"january"_s));
        QCOMPARE(headings(shownList(window.get())),
                 QStringList({u"Février 2001"_s, u"Janvier 2001"_s, u"Février 2000"_s}));
        const auto top = [&](const QString &name) {
            return named(window.get(), name)->mapTo(window.get(), QPoint()).y();
        };
        QVERIFY(top(u"february, late"_s) < top(u"february, early"_s));
        QVERIFY(top(u"february, early"_s) < top(u"january"_s));
        QVERIFY(top(u"january"_s) < top(u"the year before"_s));
    }
};

int main(int argc, char *argv[])
{
    return runWithService<TestWindowStart>(argc, argv, installSectionListAccessibility);
}

#include "test_window_start.moc"
