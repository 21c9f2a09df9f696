// Deleting an event from the list, with its confirmation.

#include "browse/EventRow.h"
#include "controls/ErrorText.h"
#include "support/MembersWindow.h"

#include <QApplication>

#include <algorithm>
#include <memory>

using namespace Qt::StringLiterals;
using namespace WindowTest;
using namespace MembersWindow;

class TestWindowDeleting : public QObject {
    Q_OBJECT

    HttpServer &m_server;
    Service m_service;
    int m_deletes = 0;
    std::unique_ptr<ContentView> m_window;

    int deletes() const { return count(m_server, "DELETE") - m_deletes; }

    /// Presses the bin of this event.
    void askToDelete(const QString &event)
    {
        const QWidget *eventRow = named(m_window.get(), event);
        QVERIFY(eventRow);
        click(eventRow, u"Supprimer"_s);
        QTRY_VERIFY(sheet(m_window.get()) && sheet(m_window.get())->isActiveWindow());
    }
    QString shownError() const
    {
        const auto errors = m_window->findChildren<ErrorText *>();
        for (const ErrorText *error : errors) {
            if (error->isVisible())
                return error->text();
        }
        return {};
    }

public:
    explicit TestWindowDeleting(HttpServer &server)
        : m_server(server)
    {
    }

private Q_SLOTS:
    void init()
    {
        m_service = {};
        m_service.rows = {row(u"mine"_s, 3, {{u"user_id"_s, u"moi"_s}}), row(u"free"_s, 4)};
        m_server.answerWith([this](const HttpRequest &request) {
            if (request.method == "DELETE" && !m_service.toWrites)
                m_service.rows.removeFirst();
            return m_service.answer(request);
        });
        m_window = shownWindow();
        QVERIFY(m_window);
        signInAs(u"a@b.fr"_s);
        QTRY_VERIFY(named(m_window.get(), u"mine"_s));
        QTRY_VERIFY(button(named(m_window.get(), u"mine"_s), u"Supprimer"_s));
        m_deletes = count(m_server, "DELETE");
    }
    void cleanup()
    {
        m_window.reset();
        SupabaseClient::signOut();
    }

    void theQuestionIsAskedInItsOwnWords()
    {
        askToDelete(u"mine"_s);
        const Sheet *question = sheet(m_window.get());
        QVERIFY(named(question, u"Supprimer l'événement ?"_s));
        QVERIFY(named(question, u"Cette action est irréversible."_s));
        const QWidget *remove = button(question, u"Supprimer"_s);
        const QWidget *cancel = button(question, u"Annuler"_s);
        QVERIFY(remove->y() < cancel->y());
        QCOMPARE(remove->width(), cancel->width());
        QCOMPARE(question->card().width(), 300);
        // The row stays marked, so that it is seen what would go.
        QVERIFY(qobject_cast<EventRow *>(named(m_window.get(), u"mine"_s))->isSelected());
    }

    void returnDeletesNothing()
    {
        askToDelete(u"mine"_s);
        QTRY_VERIFY(button(sheet(m_window.get()), u"Annuler"_s)->hasFocus());
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Return);
        QVERIFY(!sheet(m_window.get()));
        QCOMPARE(deletes(), 0);
    }

    void everyWayOutButOneDeletesNothing_data()
    {
        QTest::addColumn<QString>("way");
        QTest::newRow("cancel") << u"Annuler"_s;
        QTest::newRow("escape") << u"Escape"_s;
        QTest::newRow("closing") << u"close"_s;
    }

    void everyWayOutButOneDeletesNothing()
    {
        QFETCH(QString, way);
        askToDelete(u"mine"_s);
        Sheet *question = sheet(m_window.get());
        if (way == u"Escape")
            QTest::keyClick(question, Qt::Key_Escape);
        else if (way == u"close")
            question->close();
        else
            click(question, way);
        QVERIFY(!sheet(m_window.get()));
        QVERIFY(!qobject_cast<EventRow *>(named(m_window.get(), u"mine"_s))->isSelected());
        QTest::qWait(20);
        QCOMPARE(deletes(), 0);
        QVERIFY(named(m_window.get(), u"mine"_s));
    }

    void theQuestionIsGoneAtOnceAndTheRowAfterTheReload()
    {
        m_service.toWrites = HttpAnswer::whole(204, "").late(60);
        askToDelete(u"mine"_s);
        click(sheet(m_window.get()), u"Supprimer"_s);
        QVERIFY(!sheet(m_window.get()));
        QVERIFY(named(m_window.get(), u"mine"_s));
        QTRY_COMPARE(deletes(), 1);
        QVERIFY(named(m_window.get(), u"mine"_s));
        m_service.rows.removeFirst();
        QTRY_VERIFY(!named(m_window.get(), u"mine"_s));
        QTRY_VERIFY(named(m_window.get(), u"free"_s));
        QCOMPARE(deletes(), 1);
    }

    void theRightEventIsDeleted()
    {
        askToDelete(u"mine"_s);
        click(sheet(m_window.get()), u"Supprimer"_s);
        QTRY_VERIFY(named(m_window.get(), u"free"_s) && !named(m_window.get(), u"mine"_s));
        const auto &requests = m_server.requests();
        const auto sent = std::find_if(requests.rbegin(), requests.rend(),
                                       [](const auto &r) { return r.method == "DELETE"; });
        QCOMPARE(sent->target, "/rest/v1/events?id=eq.mine");
        QCOMPARE(sent->header("Authorization"), "Bearer jeton");
    }

    void aRefusalIsShownInPlaceOfTheListUntilTheNextLoad()
    {
        m_service.toWrites = HttpAnswer::whole(403, "row is not yours");
        askToDelete(u"mine"_s);
        click(sheet(m_window.get()), u"Supprimer"_s);
        QTRY_VERIFY(!shownError().isEmpty());
        QVERIFY2(shownError().startsWith(u"Failed to delete event: "), qPrintable(shownError()));
        QVERIFY(shownError().contains(u"row is not yours"));
        QVERIFY(!named(m_window.get(), u"mine"_s));
        QTRY_VERIFY(m_window->isActiveWindow());
        QTest::keyClick(m_window.get(), Qt::Key_F5);
        QTRY_VERIFY(named(m_window.get(), u"mine"_s));
        QVERIFY(shownError().isEmpty());
    }

    void aLostConnectionIsShownAndTheWriteWasSentOnce_data()
    {
        QTest::addColumn<bool>("isTornDown");
        QTest::newRow("ended") << false;
        QTest::newRow("torn down") << true;
    }

    void aLostConnectionIsShownAndTheWriteWasSentOnce()
    {
        QFETCH(bool, isTornDown);
        m_service.toWrites = isTornDown ? HttpAnswer::rst() : HttpAnswer::fin();
        askToDelete(u"mine"_s);
        click(sheet(m_window.get()), u"Supprimer"_s);
        QTRY_VERIFY(shownError().startsWith(u"Failed to delete event: "));
        QTest::qWait(50);
        QCOMPARE(deletes(), 1);
    }

    void signedOutTheServiceIsNotEvenAsked()
    {
        SupabaseClient::signOut();
        QTRY_VERIFY(button(named(m_window.get(), u"free"_s), u"Supprimer"_s));
        askToDelete(u"free"_s);
        click(sheet(m_window.get()), u"Supprimer"_s);
        QTRY_COMPARE(shownError(), u"Failed to delete event: Vous devez être connecté."_s);
        QCOMPARE(deletes(), 0);
        // The keyboard is not lost behind the error.
        QTRY_VERIFY(m_window->isActiveWindow());
        QTest::keyClick(m_window.get(), Qt::Key_F5);
        QTRY_VERIFY(named(m_window.get(), u"free"_s));
    }

    void theKeyboardGoesOnAfterADelete()
    {
        named(m_window.get(), u"mine"_s)->setFocus(Qt::TabFocusReason);
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
        QCOMPARE(QApplication::focusWidget()->accessibleName(), u"Supprimer"_s);
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Space);
        QTRY_VERIFY(sheet(m_window.get()));
        QTRY_VERIFY(sheet(m_window.get())->isActiveWindow());
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Backtab);
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Space);
        QVERIFY(!sheet(m_window.get()));
        QTRY_VERIFY(!named(m_window.get(), u"mine"_s) && named(m_window.get(), u"free"_s));
        QTRY_VERIFY(m_window->isActiveWindow());
        QVERIFY(named(m_window.get(), u"free"_s)->hasFocus());
    }

    void aWindowClosedWhileDeletingIsJustGone()
    {
        m_service.toWrites = HttpAnswer::whole(204, "").late(60);
        askToDelete(u"mine"_s);
        click(sheet(m_window.get()), u"Supprimer"_s);
        QTRY_COMPARE(deletes(), 1);
        m_window.reset();
        QTest::qWait(120);
        QCOMPARE(deletes(), 1);
    }
};

int main(int argc, char *argv[])
{
    return runWithService<TestWindowDeleting>(argc, argv, installSectionListAccessibility);
}

#include "test_window_deleting.moc"
