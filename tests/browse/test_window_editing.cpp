// Adding and changing an event from the window: the form over it, and the list after it.

#include "browse/EventRow.h"
#include "support/MembersWindow.h"

#include <QJsonDocument>

#include <memory>

using namespace Qt::StringLiterals;
using namespace WindowTest;
using namespace MembersWindow;

class TestWindowEditing : public QObject {
    Q_OBJECT

    HttpServer &m_server;
    Service m_service;
    int m_loads = 0;
    std::unique_ptr<ContentView> m_window;

    int loads() const { return count(m_server, "GET") - m_loads; }
    QJsonObject lastBody(const QByteArray &method) const
    {
        const auto &requests = m_server.requests();
        for (auto it = requests.rbegin(); it != requests.rend(); ++it) {
            if (it->method == method && it->target.startsWith("/rest/"))
                return QJsonDocument::fromJson(it->body).object();
        }
        return {};
    }
    void type(const QString &name, const QString &text)
    {
        QLineEdit *edit = field(sheet(m_window.get()), name);
        QVERIFY(edit);
        edit->setFocus(Qt::MouseFocusReason);
        edit->selectAll();
        QTest::keyClicks(edit, text);
    }

public:
    explicit TestWindowEditing(HttpServer &server)
        : m_server(server)
    {
    }

private Q_SLOTS:
    void init()
    {
        m_service = {};
        m_service.rows = {row(u"mine"_s, 3, {{u"user_id"_s, u"moi"_s}})};
        m_server.answerWith(
            [this](const HttpRequest &request) { return m_service.answer(request); });
        m_window = shownWindow();
        QVERIFY(m_window);
        signInAs(u"a@b.fr"_s);
        QTRY_VERIFY(named(m_window.get(), u"mine"_s));
        QTRY_VERIFY(button(m_window.get(), u"Ajouter un événement"_s));
        m_loads = count(m_server, "GET");
    }
    void cleanup()
    {
        m_window.reset();
        SupabaseClient::signOut();
    }

    void aNewEventIsSentAndTheListLoadedAgain()
    {
        click(m_window.get(), u"Ajouter un événement"_s);
        QVERIFY(named(sheet(m_window.get()), u"Ajouter un événement"_s));
        type(u"Titre"_s, u"Bal du 14"_s);
        m_service.rows.append(row(u"Bal du 14"_s, 5));
        click(sheet(m_window.get()), u"Créer"_s);
        QTRY_VERIFY(!sheet(m_window.get()));
        QTRY_VERIFY(named(m_window.get(), u"Bal du 14"_s));
        QCOMPARE(loads(), 1);
        const QJsonObject body = lastBody("POST");
        QCOMPARE(body.value(u"titre"_s).toString(), u"Bal du 14"_s);
        QCOMPARE(body.value(u"user_id"_s).toString(), u"moi"_s);
        QCOMPARE(body.value(u"contact_email"_s).toString(), u"a@b.fr"_s);
    }

    void theFormClosesWithoutWaitingForTheList()
    {
        m_server.answerWith([this](const HttpRequest &request) {
            const HttpAnswer answer = m_service.answer(request);
            return request.method == "GET" ? HttpAnswer::silence() : answer;
        });
        click(m_window.get(), u"Ajouter un événement"_s);
        click(sheet(m_window.get()), u"Créer"_s);
        QTRY_VERIFY(!sheet(m_window.get()));
        QTRY_COMPARE(loads(), 1);
        QVERIFY(named(m_window.get(), u"Loading events…"_s));
    }

    void thePencilOpensTheFormOnItsEvent()
    {
        click(named(m_window.get(), u"mine"_s), u"Modifier"_s);
        Sheet *form = sheet(m_window.get());
        QVERIFY(form);
        QVERIFY(named(form, u"Modifier l'événement"_s));
        const QLineEdit *title = field(form, u"Titre"_s);
        QVERIFY(title);
        QCOMPARE(title->text(), u"mine"_s);
        QVERIFY(qobject_cast<EventRow *>(named(m_window.get(), u"mine"_s))->isSelected());
        type(u"Titre"_s, u"ours"_s);
        m_service.rows = {row(u"ours"_s, 3, {{u"user_id"_s, u"moi"_s}})};
        click(form, u"Enregistrer"_s);
        QTRY_VERIFY(!sheet(m_window.get()));
        QTRY_VERIFY(named(m_window.get(), u"ours"_s));
        QVERIFY(!named(m_window.get(), u"mine"_s));
        QCOMPARE(lastBody("PATCH").value(u"titre"_s).toString(), u"ours"_s);
        QCOMPARE(loads(), 1);
    }

    void aFormThatWasLeftChangesNothing()
    {
        click(named(m_window.get(), u"mine"_s), u"Modifier"_s);
        click(sheet(m_window.get()), u"Annuler"_s);
        QVERIFY(!sheet(m_window.get()));
        QVERIFY(!qobject_cast<EventRow *>(named(m_window.get(), u"mine"_s))->isSelected());
        QTest::qWait(20);
        QCOMPARE(loads(), 0);
    }

    void aSaveThatEndsAfterItsFormStillLoadsTheList()
    {
        m_service.toWrites = HttpAnswer::whole(201, "").late(60);
        click(m_window.get(), u"Ajouter un événement"_s);
        const int before = count(m_server, "POST");
        click(sheet(m_window.get()), u"Créer"_s);
        QTRY_COMPARE(count(m_server, "POST"), before + 1);
        click(sheet(m_window.get()), u"Annuler"_s);
        QVERIFY(!sheet(m_window.get()));
        QCOMPARE(loads(), 0);
        QTRY_COMPARE(loads(), 1);
    }

    void aWindowClosedDuringASaveIsJustGone()
    {
        m_service.toWrites = HttpAnswer::whole(201, "").late(60);
        click(m_window.get(), u"Ajouter un événement"_s);
        const int before = count(m_server, "POST");
        click(sheet(m_window.get()), u"Créer"_s);
        QTRY_COMPARE(count(m_server, "POST"), before + 1);
        m_window.reset();
        QTest::qWait(120);
        QCOMPARE(count(m_server, "POST"), before + 1);
        QCOMPARE(loads(), 0);
    }

    void theFocusGoesBackToItsEventThoughTheListChangedMeanwhile()
    {
        m_service.rows = {row(u"a"_s, 1), row(u"b"_s, 2), row(u"c"_s, 3)};
        QTest::keyClick(m_window.get(), Qt::Key_F5);
        QTRY_VERIFY(named(m_window.get(), u"b"_s));
        shownList(m_window.get())->focusRow(u"b"_s);
        QTRY_COMPARE(m_window->focusWidget()->accessibleName(), u"b"_s);
        // As a screen reader presses: the focus stays where it is.
        QAbstractButton *add = button(m_window.get(), u"Ajouter un événement"_s);
        QAccessible::queryAccessibleInterface(add)->actionInterface()->doAction(
            QAccessibleActionInterface::pressAction());
        QTRY_VERIFY(sheet(m_window.get()));
        m_service.rows = {row(u"z"_s, 1), row(u"a"_s, 2), row(u"y"_s, 3), row(u"b"_s, 4)};
        click(sheet(m_window.get()), u"Créer"_s);
        QTRY_VERIFY(!sheet(m_window.get()));
        QTRY_VERIFY(named(m_window.get(), u"z"_s));
        QTRY_COMPARE(m_window->focusWidget()->accessibleName(), u"b"_s);
    }

    void theListShowsWhatTheServiceHasNotWhatWasTyped()
    {
        click(named(m_window.get(), u"mine"_s), u"Modifier"_s);
        type(u"Titre"_s, u"typed"_s);
        click(sheet(m_window.get()), u"Enregistrer"_s);
        QTRY_COMPARE(loads(), 1);
        QTRY_VERIFY(named(m_window.get(), u"mine"_s));
        QVERIFY(!named(m_window.get(), u"typed"_s));
    }
};

int main(int argc, char *argv[])
{
    return runWithService<TestWindowEditing>(argc, argv, installSectionListAccessibility);
}

#include "test_window_editing.moc"
