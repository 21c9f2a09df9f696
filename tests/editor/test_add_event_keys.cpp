// The event form by keyboard: where the focus goes, what Return, Space and Escape do.

#include "controls/DateField.h"
#include "support/FormTest.h"
#include "support/ViewMain.h"

#include <QApplication>
#include <QInputMethodEvent>
#include <QScrollArea>
#include <QScrollBar>

#include <functional>

using namespace Qt::StringLiterals;
using namespace FormTest;

class TestAddEventKeys : public QObject {
    Q_OBJECT

    HttpServer &m_server;

public:
    explicit TestAddEventKeys(HttpServer &server)
        : m_server(server)
    {
    }

private Q_SLOTS:
    void init() { signIn(m_server); }

    void theTitleHasTheFocus();
    void tabGoesThroughTheFieldsAsTheEyeDoes();
    void returnInAFieldOfOneLineDoesNothing();
    void annulerClosesAndSendsNothing();
    void spacePressesTheFocusedButton();
    void escapeClosesAnUntouchedForm();
    void escapeLeavesAChangedFormOpen_data();
    void escapeLeavesAChangedFormOpen();
    void escapeClosesAFormWhoseChangesWereTakenBack();
    void escapeClosesAMenuBeforeTheForm();
    void escapeClosesTheCalendarBeforeTheForm();
    void escapeGivesUpACompositionBeforeTheForm();
    void theFocusedFieldScrollsIntoSight();
};

void TestAddEventKeys::theTitleHasTheFocus()
{
    const Form form;
    QTRY_VERIFY(form.field(u"Titre"_s)->hasFocus());
    type(form.field(u"Titre"_s), u" !"_s);
    QCOMPARE(form.field(u"Titre"_s)->text(), u"Atelier création !"_s);
}

void TestAddEventKeys::tabGoesThroughTheFieldsAsTheEyeDoes()
{
    const Form form;
    form.choose(u"Organisé par"_s, u"Autre"_s);
    form.field(u"Titre"_s)->setFocus(Qt::TabFocusReason);
    QStringList names;
    for (int i = 0; i < 20; ++i) {
        const QString name = QApplication::focusWidget()->accessibleName();
        if (names.isEmpty() || names.last() != name)
            names.append(name);
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    }
    QCOMPARE(names.first(13),
             (QStringList{u"Titre"_s, u"Description"_s, u"Tags"_s, u"Lieu"_s, u"Lien"_s,
                          u"Organisé par"_s, u"Préciser"_s, u"Email de contact"_s, u"Date"_s,
                          u"Heure"_s, u"Annuler"_s, u"Créer"_s, u"Titre"_s}));
}

void TestAddEventKeys::returnInAFieldOfOneLineDoesNothing()
{
    const auto before = m_server.requests().size();
    const Form form;
    form.choose(u"Organisé par"_s, u"Autre"_s);
    for (const QString &name : {u"Titre"_s, u"Lieu"_s, u"Lien"_s, u"Préciser"_s,
                                u"Email de contact"_s, u"Date"_s, u"Heure"_s}) {
        QWidget *field = form.named(name);
        field->setFocus(Qt::TabFocusReason);
        QTest::keyClick(field, Qt::Key_Return);
        QTest::keyClick(field, Qt::Key_Enter);
        QVERIFY(field->hasFocus());
        QVERIFY(form.isOpen());
        QVERIFY(form.save()->isEnabled());
    }
    QCOMPARE(m_server.requests().size(), before);
}

void TestAddEventKeys::annulerClosesAndSendsNothing()
{
    const auto before = m_server.requests().size();
    const Form form;
    form.retype(u"Titre"_s, u"Fête"_s);
    form.press(u"Annuler"_s);
    QVERIFY(!form.isOpen());
    QCOMPARE(form.created, 0);
    QCOMPARE(m_server.requests().size(), before);
    const Form other;
    QVERIFY(onCard(other, other.button(u"Annuler"_s)).right() < onCard(other, other.save()).left());
}

void TestAddEventKeys::spacePressesTheFocusedButton()
{
    const Form form;
    form.retype(u"Titre"_s, u"Fête"_s);
    form.button(u"Annuler"_s)->setFocus(Qt::TabFocusReason);
    QTest::keyClick(form.button(u"Annuler"_s), Qt::Key_Space);
    QVERIFY(!form.isOpen());
}

void TestAddEventKeys::escapeClosesAnUntouchedForm()
{
    const Form form(fullEvent());
    form.named(u"Description"_s)->setFocus(Qt::TabFocusReason);
    QTest::keyClick(form.named(u"Date"_s), Qt::Key_Right);
    QTest::keyClick(form.named(u"Description"_s), Qt::Key_Escape);
    QVERIFY(!form.isOpen());
}

void TestAddEventKeys::escapeLeavesAChangedFormOpen_data()
{
    using Change = std::function<void(const Form &)>;
    QTest::addColumn<Change>("change");
    QTest::newRow("title") << Change(
        [](const Form &form) { type(form.field(u"Titre"_s), u"x"_s); });
    QTest::newRow("description") << Change(
        [](const Form &form) { type(form.named(u"Description"_s), u"x"_s); });
    QTest::newRow("tags") << Change([](const Form &form) { form.choose(u"Tags"_s, u"Repas"_s); });
    QTest::newRow("place") << Change([](const Form &form) { type(form.field(u"Lieu"_s), u"x"_s); });
    QTest::newRow("link") << Change([](const Form &form) { type(form.field(u"Lien"_s), u"x"_s); });
    QTest::newRow("organiser") << Change(
        [](const Form &form) { form.choose(u"Organisé par"_s, u"Causarium"_s); });
    QTest::newRow("contact") << Change(
        [](const Form &form) { type(form.field(u"Email de contact"_s), u"x"_s); });
    QTest::newRow("day") << Change(
        [](const Form &form) { QTest::keyClick(form.named(u"Date"_s), Qt::Key_Up); });
    QTest::newRow("time") << Change(
        [](const Form &form) { QTest::keyClick(form.named(u"Heure"_s), Qt::Key_Up); });
}

void TestAddEventKeys::escapeLeavesAChangedFormOpen()
{
    QFETCH(std::function<void(const Form &)>, change);
    const Form form(fullEvent());
    change(form);
    for (const QString &name : {u"Titre"_s, u"Description"_s, u"Tags"_s, u"Date"_s, u"Annuler"_s})
        QTest::keyClick(form.named(name), Qt::Key_Escape);
    QVERIFY(form.isOpen());
}

void TestAddEventKeys::escapeClosesAFormWhoseChangesWereTakenBack()
{
    const Form form(fullEvent());
    type(form.field(u"Titre"_s), u"x"_s);
    QTest::keyClick(form.field(u"Titre"_s), Qt::Key_Backspace);
    form.choose(u"Tags"_s, u"Sport"_s);
    form.choose(u"Tags"_s, u"Sport"_s);
    for (const QString &name : {u"Date"_s, u"Heure"_s}) {
        QTest::keyClick(form.named(name), Qt::Key_Up);
        QTest::keyClick(form.named(name), Qt::Key_Down);
    }
    QTest::keyClick(form.field(u"Titre"_s), Qt::Key_Escape);
    QVERIFY(!form.isOpen());
}

void TestAddEventKeys::escapeClosesAMenuBeforeTheForm()
{
    const Form form;
    auto *tags = form.named<PopupLabel>(u"Tags"_s);
    tags->setFocus(Qt::TabFocusReason);
    QTest::keyClick(tags, Qt::Key_Space);
    QTest::keyClick(tags->menu(), Qt::Key_Escape);
    QVERIFY(!tags->menu()->isVisible());
    QVERIFY(form.isOpen());
    QTest::keyClick(tags, Qt::Key_Escape);
    QVERIFY(!form.isOpen());
}

void TestAddEventKeys::escapeClosesTheCalendarBeforeTheForm()
{
    const Form form;
    auto *date = form.named<DateField>(u"Date"_s);
    date->setFocus(Qt::TabFocusReason);
    QTest::keyClick(date, Qt::Key_F4);
    QWidget *calendar = QApplication::activePopupWidget();
    QVERIFY(calendar);
    QTest::keyClick(calendar->focusWidget(), Qt::Key_Escape);
    QVERIFY(!calendar->isVisible());
    QVERIFY(form.isOpen());
    QTest::keyClick(date, Qt::Key_Escape);
    QVERIFY(!form.isOpen());
}

void TestAddEventKeys::escapeGivesUpACompositionBeforeTheForm()
{
    const Form form;
    for (const QString &name : {u"Titre"_s, u"Description"_s, u"Lieu"_s}) {
        QWidget *field = form.named(name);
        field->setFocus(Qt::MouseFocusReason); // selects nothing that it would replace
        QInputMethodEvent composing(u"^"_s, {});
        QApplication::sendEvent(field, &composing);
        QTest::keyClick(field, Qt::Key_Escape);
        QVERIFY(form.isOpen());
    }
    QCOMPARE(form.field(u"Titre"_s)->text(), u"Atelier création"_s);
    QTest::keyClick(form.field(u"Titre"_s), Qt::Key_Escape);
    QVERIFY(!form.isOpen());
}

void TestAddEventKeys::theFocusedFieldScrollsIntoSight()
{
    const Form form;
    form.window->resize(760, 300);
    QTRY_VERIFY(scrollBar(form)->maximum() > 100);
    form.field(u"Titre"_s)->setFocus(Qt::TabFocusReason);
    const QWidget *viewport = form.view->findChild<QScrollArea *>()->viewport();
    for (int i = 0; i < 13; ++i) {
        QWidget *field = QApplication::focusWidget();
        if (viewport->isAncestorOf(field)) {
            const QRect shown(field->mapTo(viewport, QPoint()), field->size());
            QVERIFY2(viewport->rect().contains(shown), qPrintable(field->accessibleName()));
        }
        QTest::keyClick(field, Qt::Key_Tab);
    }
    QVERIFY(scrollBar(form)->value() > 0);
}

int main(int argc, char *argv[])
{
    return runWithService<TestAddEventKeys>(argc, argv);
}

#include "test_add_event_keys.moc"
