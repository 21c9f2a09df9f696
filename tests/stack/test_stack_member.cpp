// A member's day, through the real window, on the local service and its real database: signs up,
// publishes an event, changes it, deletes it, signs out, comes back, forgets the account.

#include "backend/SupabaseClient.h"
#include "browse/EventRow.h"
#include "look/Accessibility.h"
#include "sectionlist/SectionListAccessible.h"
#include "support/LocalService.h"
#include "support/MembersWindow.h"
#include "support/OwnHome.h"

#include <QApplication>

#include <memory>

using namespace Qt::StringLiterals;
using namespace WindowTest;
using namespace MembersWindow;

namespace {

const QString addAccount = u"Ajouter un compte"_s;
const QString addEvent = u"Ajouter un événement"_s;

QString headingOfThisMonth()
{
    return Calendar::current().monthTitle({QDateTime::currentMSecsSinceEpoch()});
}

// What follows acts as somebody without a mouse: keys go where the focus is.

QWidget *keyTarget()
{
    if (QWidget *popup = QApplication::activePopupWidget())
        return popup->focusWidget() ? popup->focusWidget() : popup;
    return QApplication::focusWidget() ? QApplication::focusWidget() : QApplication::activeWindow();
}

void press(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier)
{
    QTest::keyClick(keyTarget(), key, modifiers);
}

/// Presses Tab until the control of this name has the focus.
bool tabTo(const QString &name)
{
    constexpr int enough = 60;
    for (int i = 0; i < enough; ++i) {
        if (keyTarget()->accessibleName() == name)
            return true;
        press(Qt::Key_Tab);
    }
    return false;
}

/// Goes to a field, and types in place of what it holds.
bool fill(const QString &name, const QString &text)
{
    if (!tabTo(name))
        return false;
    press(Qt::Key_A, Qt::ControlModifier);
    QTest::keyClicks(keyTarget(), text);
    return true;
}

/// From one row to the next until the one of this event has the focus.
bool walkTo(const QString &event)
{
    press(Qt::Key_Home);
    constexpr int enough = 100;
    for (int i = 0; i < enough; ++i) {
        if (keyTarget()->accessibleName() == event)
            return true;
        press(Qt::Key_Down);
    }
    return false;
}

} // namespace

class TestStackMember : public QObject {
    Q_OBJECT

    std::unique_ptr<ContentView> m_window;

    Sheet *form() const { return sheet(m_window.get()); }
    QWidget *rowOf(const QString &title) const { return named(m_window.get(), title); }
    /// Types in place of what the field of the open form holds, having clicked into it.
    void type(const QString &name, const QString &text) const
    {
        QLineEdit *edit = field(form(), name);
        QVERIFY2(edit, qPrintable(name));
        QTest::mouseClick(edit, Qt::LeftButton);
        QTest::keyClick(edit, Qt::Key_A, Qt::ControlModifier);
        QTest::keyClicks(edit, text);
    }

    void openMenu() const
    {
        press(Qt::Key_Space);
        QTRY_VERIFY(accountMenu(m_window.get()));
        // Nobody is quicker than the platform, which takes a moment to show it.
        QTest::qWait(50);
    }

private Q_SLOTS:
    void init()
    {
        m_window = shownWindow();
        QVERIFY(m_window);
        QTRY_VERIFY(!m_window->findChildren<EventRow *>().isEmpty());
    }
    void cleanup()
    {
        m_window.reset();
        SupabaseClient::signOut();
    }

    void byMouse()
    {
        click(m_window.get(), addAccount);
        type(u"Email"_s, u"marthe@morvelle.example"_s);
        type(u"Mot de passe"_s, u"un mot sur"_s);
        QTest::mouseClick(createAccount(form()), Qt::LeftButton);
        QTRY_VERIFY(!form());
        QTRY_VERIFY(button(m_window.get(), addEvent));
        QVERIFY(!button(m_window.get(), addAccount));

        click(m_window.get(), addEvent);
        type(u"Titre"_s, u"Lecture au coin du feu"_s);
        type(u"Lieu"_s, u"Chez Marthe"_s);
        click(form(), u"Créer"_s);
        QTRY_VERIFY(!form());
        QTRY_VERIFY(rowOf(u"Lecture au coin du feu"_s));
        QVERIFY(headings(shownList(m_window.get())).contains(headingOfThisMonth()));
        QVERIFY(
            rowOf(u"Lecture au coin du feu"_s)->accessibleDescription().contains(u"Chez Marthe"));

        click(rowOf(u"Lecture au coin du feu"_s), u"Modifier"_s);
        type(u"Titre"_s, u"Lecture et tisane"_s);
        click(form(), u"Enregistrer"_s);
        QTRY_VERIFY(!form());
        QTRY_VERIFY(rowOf(u"Lecture et tisane"_s));
        QVERIFY(!rowOf(u"Lecture au coin du feu"_s));

        click(rowOf(u"Lecture et tisane"_s), u"Supprimer"_s);
        click(form(), u"Supprimer"_s);
        QTRY_VERIFY(!rowOf(u"Lecture et tisane"_s));
        QTRY_VERIFY(!m_window->findChildren<EventRow *>().isEmpty());

        click(m_window.get(), u"Compte"_s);
        click(accountMenu(m_window.get()), u"Se déconnecter"_s);
        QTRY_VERIFY(!button(m_window.get(), addEvent));
        click(m_window.get(), u"Compte"_s);
        click(accountMenu(m_window.get()), u"Se connecter"_s);
        QTRY_VERIFY(button(m_window.get(), addEvent));
        click(m_window.get(), u"Compte"_s);
        click(accountMenu(m_window.get()), u"Supprimer le compte"_s);
        QTRY_VERIFY(button(m_window.get(), addAccount));
        QVERIFY(!button(m_window.get(), addEvent));
        QVERIFY(!CredentialsStore::loadCredentials());
    }

    void byKeyboardAlone()
    {
        QVERIFY(tabTo(addAccount));
        press(Qt::Key_Space);
        QTRY_VERIFY(form() && form()->isActiveWindow());
        QTRY_COMPARE(keyTarget()->accessibleName(), u"Email"_s);
        QTest::keyClicks(keyTarget(), u"gaston@morvelle.example"_s);
        QVERIFY(fill(u"Mot de passe"_s, u"un autre mot"_s));
        // The segment of the same name comes before the field.
        QVERIFY(tabTo(u"Annuler"_s));
        QVERIFY(tabTo(u"Créer un compte"_s));
        QCOMPARE(keyTarget(), createAccount(form()));
        press(Qt::Key_Space);
        QTRY_VERIFY(!form());
        QTRY_VERIFY(m_window->isActiveWindow());
        QTRY_VERIFY(button(m_window.get(), addEvent));

        QVERIFY(tabTo(addEvent));
        press(Qt::Key_Return);
        QTRY_VERIFY(form() && form()->isActiveWindow());
        QTRY_COMPARE(keyTarget()->accessibleName(), u"Titre"_s);
        QVERIFY(fill(u"Titre"_s, u"Tournoi de belote"_s));
        QVERIFY(tabTo(u"Créer"_s));
        press(Qt::Key_Space);
        QTRY_VERIFY(!form());
        QTRY_VERIFY(rowOf(u"Tournoi de belote"_s));
        QTRY_VERIFY(m_window->isActiveWindow());

        QVERIFY(tabTo(u"À venir"_s));
        press(Qt::Key_Tab);
        QVERIFY(walkTo(u"Tournoi de belote"_s));
        // Open and close it, then go on from where it was.
        press(Qt::Key_Return);
        QTRY_VERIFY(form() && form()->isActiveWindow());
        press(Qt::Key_Escape);
        QTRY_VERIFY(!form() && m_window->isActiveWindow());
        QTRY_COMPARE(keyTarget()->accessibleName(), u"Tournoi de belote"_s);
        QVERIFY(tabTo(u"Modifier"_s));
        press(Qt::Key_Space);
        QTRY_VERIFY(form() && form()->isActiveWindow());
        QVERIFY(fill(u"Titre"_s, u"Tournoi de tarot"_s));
        QVERIFY(tabTo(u"Enregistrer"_s));
        press(Qt::Key_Space);
        QTRY_VERIFY(!form());
        QTRY_VERIFY(rowOf(u"Tournoi de tarot"_s));
        QTRY_VERIFY(m_window->isActiveWindow());

        QVERIFY(tabTo(u"À venir"_s));
        press(Qt::Key_Tab);
        QVERIFY(walkTo(u"Tournoi de tarot"_s));
        QVERIFY(tabTo(u"Supprimer"_s));
        press(Qt::Key_Space);
        QTRY_VERIFY(form() && form()->isActiveWindow());
        QTRY_COMPARE(keyTarget()->accessibleName(), u"Annuler"_s);
        QVERIFY(tabTo(u"Supprimer"_s));
        press(Qt::Key_Space);
        QTRY_VERIFY(!form() && !rowOf(u"Tournoi de tarot"_s));
        QTRY_VERIFY(m_window->isActiveWindow());

        for (const QString &step : {u"Se déconnecter"_s, u"Se connecter"_s}) {
            QVERIFY(tabTo(u"Compte"_s));
            openMenu();
            QVERIFY(tabTo(step));
            press(Qt::Key_Space);
            QTRY_VERIFY(!accountMenu(m_window.get()) && m_window->isActiveWindow());
            QTRY_COMPARE(button(m_window.get(), addEvent) != nullptr, step == u"Se connecter");
        }
        QVERIFY(tabTo(u"Compte"_s));
        openMenu();
        QVERIFY(tabTo(u"Supprimer le compte"_s));
        press(Qt::Key_Space);
        QTRY_VERIFY(button(m_window.get(), addAccount));
        QVERIFY(!CredentialsStore::loadCredentials());
    }
};

int main(int argc, char *argv[])
{
    const OwnHome home;
    const QApplication application(argc, argv);
    const SupabaseClient::Lifetime client(home.path() + u"/reply.json"_s);
    installAccessibility();
    installSectionListAccessibility();
    LocalService service;
    if (!service.isRunning())
        qFatal("the local service did not start:\n%s", qPrintable(service.output()));
    qputenv("SUPABASE_URL", service.url().toLatin1());
    qputenv("SUPABASE_KEY", service.key().toLatin1());
    TestStackMember test;
    return QTest::qExec(&test, argc, argv);
}

#include "test_stack_member.moc"
