// The event form as a person sees it. What its keys do is in test_add_event_keys.cpp, what saving
// does in test_save_event.cpp.

#include "backend/SupabaseClient.h"
#include "controls/DateField.h"
#include "controls/FieldFrame.h"
#include "controls/TextEditor.h"
#include "controls/TimeField.h"
#include "look/Colors.h"
#include "look/Fonts.h"
#include "platform/Gmt.h"
#include "support/FormTest.h"
#include "support/LabelledHeight.h"
#include "support/ViewMain.h"

#include <QApplication>
#include <QScrollBar>

#include <algorithm>
#include <utility>

using namespace Qt::StringLiterals;
using namespace FormTest;

class TestAddEventView : public QObject {
    Q_OBJECT

    HttpServer &m_server;

public:
    explicit TestAddEventView(HttpServer &server)
        : m_server(server)
    {
    }

private Q_SLOTS:
    void init() { signIn(m_server); }

    void aNewEventOpensWithTheSamples();
    void anEventOpensWithWhatItHolds();
    void withoutAnAccountTheContactIsEmpty();
    void headingAndButtonSayWhatTheFormIsFor();
    void everyCaptionStandsAboveOrBeforeItsField();
    void aPickerIsAsWideAsItsTextAndAFieldAsTheForm();
    void theSheetIsAsHighAsItsParts();
    void aFilledFieldShowsItsBeginning();
    void anEventOfAnotherOrganiserOpensWithItsName();
    void choosingOtherAsksForTheNameAndKeepsIt();
    void aBlankTitleCannotBeSaved_data();
    void aBlankTitleCannotBeSaved();
    void inALowWindowTheFieldsScrollBetweenHeadingAndButtons();
    void theWheelOverAPickerScrollsTheForm();
    void theDayIsWrittenAsTheUserWritesDays();
    void theHoursAreCountedAsTheListCountsThem();
    void aDayOfLongAgoIsNotTouched();
    void enormousTextsOpenInASheetOfTheUsualSize();
    void textsAreShownAsTheyAre();
};

void TestAddEventView::aNewEventOpensWithTheSamples()
{
    const QDateTime before = QDateTime::currentDateTime();
    const Form form;
    QCOMPARE(form.field(u"Titre"_s)->text(), u"Atelier création"_s);
    QCOMPARE(form.named<TextEditor>(u"Description"_s)->wholeText(),
             u"Pour les enfants de 4 à 11 ans."_s);
    QCOMPARE(form.named<PopupLabel>(u"Tags"_s)->label(), u"Atelier, Jeune public"_s);
    QCOMPARE(form.field(u"Lieu"_s)->text(), u"Salle Vaudrelle"_s);
    QCOMPARE(form.field(u"Lien"_s)->text(), QString());
    QCOMPARE(form.named<PopupLabel>(u"Organisé par"_s)->label(), u"Association Culturelle"_s);
    QVERIFY(!form.field(u"Préciser"_s));
    QCOMPARE(form.field(u"Email de contact"_s)->text(), u"camille@exemple.fr"_s);
    const auto *date = form.named<DateField>(u"Date"_s);
    QVERIFY(date->date() >= before.date());
    QVERIFY(date->date() <= QDate::currentDate());
    QCOMPARE(form.field(u"Lien"_s)->placeholderText(), u"Ex: https://www.exemple.fr"_s);
}

void TestAddEventView::anEventOpensWithWhatItHolds()
{
    const Form form(fullEvent());
    QCOMPARE(form.field(u"Titre"_s)->text(), u"Bal"_s);
    QCOMPARE(form.named<TextEditor>(u"Description"_s)->wholeText(), u"Deux orchestres"_s);
    QCOMPARE(form.named<PopupLabel>(u"Tags"_s)->label(), u"Danse, Sport"_s);
    QCOMPARE(form.field(u"Lieu"_s)->text(), u"Place"_s);
    QCOMPARE(form.field(u"Lien"_s)->text(), u"https://a.fr"_s);
    QCOMPARE(form.named<PopupLabel>(u"Organisé par"_s)->label(), u"La Grange"_s);
    QCOMPARE(form.field(u"Email de contact"_s)->text(), u"a@b.fr"_s);
    QCOMPARE(form.named<DateField>(u"Date"_s)->text(), u"14/06/2026"_s);
    QCOMPARE(form.named<TimeField>(u"Heure"_s)->text(), u"18:30"_s);
}

void TestAddEventView::withoutAnAccountTheContactIsEmpty()
{
    SupabaseClient::signOut();
    const Form form;
    QCOMPARE(form.field(u"Email de contact"_s)->text(), QString());
}

void TestAddEventView::headingAndButtonSayWhatTheFormIsFor()
{
    const auto heading = [](const Form &form) {
        QStringList headings;
        const auto widgets = form.view->findChildren<QWidget *>();
        for (auto *widget : widgets) {
            const auto *reader = QAccessible::queryAccessibleInterface(widget);
            if (reader && reader->role() == QAccessible::Heading)
                headings.append(reader->text(QAccessible::Name));
        }
        return headings;
    };
    const Form add;
    QCOMPARE(heading(add), QStringList{u"Ajouter un événement"_s});
    QCOMPARE(add.view->accessibleName(), u"Ajouter un événement"_s);
    QVERIFY(add.button(u"Créer"_s));
    QVERIFY(!add.button(u"Enregistrer"_s));
    const Form edit(fullEvent());
    QCOMPARE(heading(edit), QStringList{u"Modifier l'événement"_s});
    QVERIFY(edit.button(u"Enregistrer"_s));
    QVERIFY(!edit.button(u"Créer"_s));
}

void TestAddEventView::everyCaptionStandsAboveOrBeforeItsField()
{
    const Form form;
    form.choose(u"Organisé par"_s, u"Autre"_s);
    for (const QString &name :
         {u"Titre"_s, u"Description"_s, u"Tags"_s, u"Lieu"_s, u"Lien"_s, u"Organisé par"_s,
          u"Préciser"_s, u"Email de contact"_s, u"Date"_s, u"Heure"_s}) {
        const QWidget *caption = nullptr;
        const auto widgets = form.view->findChildren<QWidget *>();
        for (const QWidget *widget : widgets) {
            if (widget->isVisible() && widget->accessibleName() == name
                && widget->focusPolicy() == Qt::NoFocus && widget->height() < 20)
                caption = widget;
        }
        QVERIFY2(caption, qPrintable(name));
        const QRect from = onCard(form, caption);
        const QRect to = onCard(form, form.named(name));
        if (name == u"Préciser" || name == u"Date" || name == u"Heure") {
            QCOMPARE(to.left(), from.right() + 1 + 8);
        } else {
            QCOMPARE(to.left(), from.left());
            QCOMPARE(to.top(), from.bottom() + 1 + 6);
        }
    }
}

void TestAddEventView::aPickerIsAsWideAsItsTextAndAFieldAsTheForm()
{
    const Form form;
    const auto left = [&](const QWidget *control) {
        return control->mapTo(form.view, QPoint()).x();
    };
    for (const QString &picker : {u"Tags"_s, u"Organisé par"_s}) {
        QCOMPARE(form.named(picker)->width(), form.named(picker)->sizeHint().width());
        QCOMPARE(left(form.named(picker)), left(form.field(u"Titre"_s)));
    }
    for (const QString &field : {u"Titre"_s, u"Lieu"_s, u"Lien"_s, u"Email de contact"_s})
        QCOMPARE(form.field(field)->width(), form.view->card().width() - 2 * 20);
}

void TestAddEventView::theSheetIsAsHighAsItsParts()
{
    const Form form;
    form.window->resize(760, 780);
    const int captions = 7 * std::max(scaled(15), QFontMetrics(appFont(12)).height());
    const int fields =
        5 * fieldHeight() + 2 * labelledHeight() + form.named(u"Description"_s)->height();
    const int before = form.view->card().height();
    QCOMPARE(form.view->card().width(), 460);
    QCOMPARE(before,
             20 + lineHeight(appFont(20, QFont::DemiBold)) + 9 + captions + 7 * 6 + fields + 7 * 10
                 + 12 + form.save()->height() + 20);
    form.choose(u"Organisé par"_s, u"Autre"_s);
    QTRY_COMPARE(form.view->card().height(), before + 6 + fieldHeight());
    m_server.answer(HttpAnswer::whole(500, "non"));
    form.pressSave();
    QTRY_COMPARE(form.view->card().height(),
                 before + 6 + fieldHeight() + lineHeight(appFont(13)) + 10);
    QCOMPARE(scrollBar(form)->maximum(), 0);
}

void TestAddEventView::aFilledFieldShowsItsBeginning()
{
    Event event = fullEvent();
    event.titre = u"un long texte "_s.repeated(20);
    event.lieu = event.link = event.contact_email = event.titre;
    event.organise_par = event.titre;
    const Form form(event);
    for (const QString &name :
         {u"Titre"_s, u"Lieu"_s, u"Lien"_s, u"Préciser"_s, u"Email de contact"_s}) {
        QLineEdit *field = form.field(name);
        const auto begins = [field] { return field->cursorPositionAt({12, 14}) < 2; };
        QVERIFY2(begins(), qPrintable(name));
        field->setFocus(Qt::TabFocusReason);
        QVERIFY2(begins(), qPrintable(name));
    }
}

void TestAddEventView::anEventOfAnotherOrganiserOpensWithItsName()
{
    Event event = fullEvent();
    event.organise_par = u"Club de marche"_s;
    const Form form(event);
    QCOMPARE(form.named<PopupLabel>(u"Organisé par"_s)->label(), u"Autre"_s);
    QCOMPARE(form.field(u"Préciser"_s)->text(), u"Club de marche"_s);
}

void TestAddEventView::choosingOtherAsksForTheNameAndKeepsIt()
{
    const Form form;
    form.choose(u"Organisé par"_s, u"Autre"_s);
    QVERIFY(form.field(u"Préciser"_s));
    QCOMPARE(form.field(u"Préciser"_s)->placeholderText(), u"Nom de l'organisateur"_s);
    type(form.field(u"Préciser"_s), u"Club"_s);
    form.choose(u"Organisé par"_s, u"Causarium"_s);
    QVERIFY(!form.field(u"Préciser"_s));
    form.choose(u"Organisé par"_s, u"Autre"_s);
    QCOMPARE(form.field(u"Préciser"_s)->text(), u"Club"_s);
}

void TestAddEventView::aBlankTitleCannotBeSaved_data()
{
    QTest::addColumn<QString>("title");
    QTest::newRow("nothing") << QString();
    QTest::newRow("spaces") << u"   "_s;
    QTest::newRow("a no-break space") << u"\u00a0"_s;
}

void TestAddEventView::aBlankTitleCannotBeSaved()
{
    QFETCH(QString, title);
    const Form form;
    QVERIFY(form.save()->isEnabled());
    form.retype(u"Titre"_s, title);
    QVERIFY(!form.save()->isEnabled());
    const auto before = m_server.requests().size();
    form.pressSave();
    QVERIFY(form.isOpen());
    type(form.field(u"Titre"_s), u"a"_s);
    QVERIFY(form.save()->isEnabled());
    QCOMPARE(m_server.requests().size(), before);
}

void TestAddEventView::inALowWindowTheFieldsScrollBetweenHeadingAndButtons()
{
    const Form form;
    form.window->resize(760, 400);
    m_server.answer(HttpAnswer::whole(500, "non"));
    form.pressSave();
    QTRY_VERIFY(form.save()->isEnabled());
    QTRY_VERIFY(scrollBar(form)->maximum() > 100);
    QCOMPARE(form.view->card().bottom() + 1, 400 - 16);
    const auto places = [&form] {
        return QList{onCard(form, form.save()), onCard(form, form.button(u"Annuler"_s)),
                     onCard(form, form.named(u"HTTP 500: non"_s))};
    };
    const auto before = places();
    scrollBar(form)->setValue(scrollBar(form)->maximum());
    QCOMPARE(places(), before);
    QCOMPARE(before.first().bottom() + 1, form.view->card().height() - 20);
}

void TestAddEventView::theWheelOverAPickerScrollsTheForm()
{
    const Form form(fullEvent());
    form.window->resize(760, 300);
    QTRY_VERIFY(scrollBar(form)->maximum() > 100);
    scrollBar(form)->setValue(scrollBar(form)->maximum() - 60);
    for (const QString &name : {u"Organisé par"_s, u"Date"_s, u"Heure"_s}) {
        const int before = scrollBar(form)->value();
        scrollBar(form)->setValue(before - 5);
        turnWheel(form.named(name));
        QVERIFY2(scrollBar(form)->value() > before - 5, qPrintable(name));
    }
    QCOMPARE(form.named<DateField>(u"Date"_s)->text(), u"14/06/2026"_s);
    QCOMPARE(form.named<TimeField>(u"Heure"_s)->text(), u"18:30"_s);
    QCOMPARE(form.named<PopupLabel>(u"Organisé par"_s)->label(), u"La Grange"_s);
}

void TestAddEventView::theDayIsWrittenAsTheUserWritesDays()
{
    const QByteArray all = qgetenv("LC_ALL");
    qunsetenv("LC_ALL");
    qputenv("LC_TIME", "fa_IR.UTF-8");
    const Form form(fullEvent());
    qputenv("LC_ALL", all);
    qunsetenv("LC_TIME");
    QCOMPARE(form.named<DateField>(u"Date"_s)->text(), u"۲۰۲۶/۰۶/۱۴"_s);
    QCOMPARE(form.named<TimeField>(u"Heure"_s)->text(), u"۱۸:۳۰"_s);
}

void TestAddEventView::theHoursAreCountedAsTheListCountsThem()
{
    const QByteArray all = qgetenv("LC_ALL");
    for (const auto &[locale, time] :
         {std::pair{"en_US.UTF-8", u"6:30 PM"_s}, std::pair{"en_GB.UTF-8", u"18:30"_s},
          std::pair{"fr_FR.UTF-8", u"18:30"_s}}) {
        qputenv("LC_ALL", locale);
        const Event event = fullEvent();
        const Form form(event);
        QCOMPARE(form.named<TimeField>(u"Heure"_s)->text(), time);
        const QString inList = Calendar::current().moment(*event.starts_at);
        QCOMPARE(inList.contains(u"PM"_s), time.contains(u"PM"_s));
    }
    qputenv("LC_ALL", all);
}

void TestAddEventView::aDayOfLongAgoIsNotTouched()
{
    Event event = fullEvent();
    event.starts_at =
        Instant{QDateTime(QDate(1700, 2, 28), QTime(12, 0), inGmt).toMSecsSinceEpoch()};
    const Form form(event);
    QCOMPARE(form.named<DateField>(u"Date"_s)->text(), u"28/02/1700"_s);
    QTest::keyClick(form.field(u"Titre"_s), Qt::Key_Escape);
    QVERIFY(!form.isOpen());
}

void TestAddEventView::enormousTextsOpenInASheetOfTheUsualSize()
{
    const Form usual;
    Event event = fullEvent();
    const QString text(1'000'000, u'x');
    event.titre = text;
    event.description = text;
    event.tags = QStringList{text};
    event.lieu = text;
    event.link = text;
    event.contact_email = text;
    const Form form(event);
    QCOMPARE(form.view->card().size(), usual.view->card().size());
    QCOMPARE(scrollBar(form)->maximum(), scrollBar(usual)->maximum());
    QCOMPARE(form.named(u"Tags"_s)->width(), 420);
}

void TestAddEventView::textsAreShownAsTheyAre()
{
    Event event = fullEvent();
    event.titre = u"<b>Bal</b> & cie"_s;
    event.description = u"<i>x</i> &amp;"_s;
    event.tags = QStringList{u"<u>A</u> & B"_s};
    event.organise_par = u"<b>Club</b>"_s;
    const Form form(event);
    QCOMPARE(form.field(u"Titre"_s)->text(), event.titre);
    QCOMPARE(form.named<TextEditor>(u"Description"_s)->document()->toPlainText(),
             *event.description);
    QCOMPARE(form.named<PopupLabel>(u"Tags"_s)->label(), u"<u>A</u> & B"_s);
    QCOMPARE(form.field(u"Préciser"_s)->text(), u"<b>Club</b>"_s);
}

int main(int argc, char *argv[])
{
    return runWithService<TestAddEventView>(argc, argv);
}

#include "test_add_event_view.moc"
