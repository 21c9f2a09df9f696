// Saving from the event form, against a service that may be late, wrong or gone.

#include "controls/DateField.h"
#include "controls/ErrorText.h"
#include "controls/TextEditor.h"
#include "controls/TimeField.h"
#include "look/Accessibility.h"
#include "look/Fonts.h"
#include "support/EventLoopChecker.h"
#include "support/FormTest.h"

#include <QApplication>
#include <QClipboard>
#include <QJsonArray>
#include <QScrollBar>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTextEdit>

using namespace Qt::StringLiterals;
using namespace FormTest;

namespace {

const HttpAnswer written = HttpAnswer::whole(201, "[{}]");

ErrorText *shownError(const Form &form)
{
    auto *error = form.view->findChild<ErrorText *>();
    return error && error->isVisible() ? error : nullptr;
}

} // namespace

class TestSaveEvent : public QObject {
    Q_OBJECT

    HttpServer &m_server;
    qsizetype m_before = 0;

    qsizetype requests() const { return m_server.requests().size() - m_before; }
    const HttpRequest &sent(int number = 0) const
    {
        return m_server.requests().at(m_before + number);
    }
    QJsonObject sentBody(int number = 0) const { return body(sent(number)); }

    /// Saves and waits until the form has closed.
    void save(const Form &form)
    {
        form.pressSave();
        QTRY_VERIFY(!form.isOpen());
    }
    /// Saves and waits until the form says why it failed.
    QString failure(const Form &form)
    {
        form.pressSave();
        if (!QTest::qWaitFor([&form] { return shownError(form) != nullptr; }))
            return u"(none shown)"_s;
        return shownError(form)->text();
    }

public:
    explicit TestSaveEvent(HttpServer &server)
        : m_server(server)
    {
    }

private Q_SLOTS:
    void init();

    void creatingWithoutTouchingAnythingSendsTheSamplesOnce();
    void everyNewEventHasAnIdentifierOfItsOwn();
    void savingUnchangedSendsTheEventAsItWas();
    void untouchedTextsAreSentLetterByLetter();
    void touchedTextsAreSentAsTyped();
    void aTouchedEnormousTextKeepsItsEnd();
    void textsAreTrimmedAndLeftOutWhenBlank();
    void tagsAreSentSortedAlsoWhenThereAreNone();
    void anotherOrganiserIsSentBackUnchanged();
    void anOrganiserTypedByHandIsSentTrimmed();
    void aBlankOrganiserIsLeftOut();
    void aHiddenOrganiserIsNotSent();
    void anEventWithoutDescriptionIsGivenTheSample();
    void theChosenDayAndTimeAreSent();
    void anUntouchedDayOfLongAgoIsSentAsItWas();
    void theMemberAtTheTimeOfSavingOwnsTheEvent();

    void theFormClosesAfterTheCompletion();
    void aFailureRunsNoCompletion();
    void pressingTwiceSendsOnce();
    void theFormStaysAliveWhileItSaves();
    void whatIsTypedWhileSavingIsNotSent();
    void aRefusalShowsTheReasonAndKeepsEverything();
    void aRefusedFormCanBeSavedAgain();
    void aNewAttemptTakesTheOldReasonAway();
    void afterARefusalTheKeyboardIsBackOnTheButton();
    void afterARefusalTheKeyboardStaysWhereItWent();
    void aReasonIsShownLetterByLetter();
    void aLongReasonScrollsAndIsCopiedWhole();
    void anUnreachableServiceIsToldInTheForm_data();
    void anUnreachableServiceIsToldInTheForm();
    void aServiceThatIsGoneIsToldInTheForm();
    void signedOutTheFormSaysSoAndSendsNothing();
    void aFormClosedWhileSavingIsSavedAllTheSame();
    void aFormClosedWhileItsSaveFailsIsJustGone();
    void aFormDestroyedWhileSavingIsSavedAllTheSame();
    void aWindowDestroyedWhileSavingIsSavedAllTheSame();
    void aFormDestroyedInItsCompletionIsJustGone();
};

void TestSaveEvent::init()
{
    signIn(m_server);
    m_server.answer(written);
    m_before = m_server.requests().size();
}

void TestSaveEvent::creatingWithoutTouchingAnythingSendsTheSamplesOnce()
{
    const QDateTime before = QDateTime::currentDateTime();
    const Form form;
    save(form);
    const QDateTime after = QDateTime::currentDateTime();
    QCOMPARE(requests(), 1);
    QCOMPARE(sent().method, "POST");
    QCOMPARE(sent().target, "/rest/v1/events");
    QCOMPARE(sent().header("Authorization"), "Bearer jeton");
    QJsonObject body = sentBody();
    QCOMPARE(body.take(u"id"_s).toString().size(), 36);
    const auto minute = [](const QDateTime &time) { return time.toString(u"yyyy-MM-dd HH:mm"_s); };
    const QString moment =
        body.take(u"date_texte"_s).toString() + u' ' + body.take(u"heure_texte"_s).toString();
    QVERIFY(moment >= minute(before) && moment <= minute(after));
    const QDateTime start =
        QDateTime::fromString(body.take(u"starts_at"_s).toString(), Qt::ISODate).toLocalTime();
    QCOMPARE(minute(start), moment);
    QCOMPARE(body,
             (QJsonObject{{u"user_id"_s, u"moi"_s},
                          {u"titre"_s, u"Atelier création"_s},
                          {u"description"_s, u"Pour les enfants de 4 à 11 ans."_s},
                          {u"tags"_s, QJsonArray{u"Atelier"_s, u"Jeune public"_s}},
                          {u"lieu"_s, u"Salle Vaudrelle"_s},
                          {u"organise_par"_s, u"Association Culturelle"_s},
                          {u"contact_email"_s, u"camille@exemple.fr"_s}}));
    QCOMPARE(form.created, 1);
}

void TestSaveEvent::everyNewEventHasAnIdentifierOfItsOwn()
{
    save(Form());
    save(Form());
    QVERIFY(sentBody(0)[u"id"] != sentBody(1)[u"id"]);
}

void TestSaveEvent::savingUnchangedSendsTheEventAsItWas()
{
    const Form form(fullEvent());
    save(form);
    QCOMPARE(requests(), 1);
    QCOMPARE(sent().method, "PATCH");
    QCOMPARE(sent().target, "/rest/v1/events?id=eq.7");
    QCOMPARE(sentBody(),
             (QJsonObject{{u"id"_s, u"7"_s},
                          {u"user_id"_s, u"moi"_s},
                          {u"titre"_s, u"Bal"_s},
                          {u"description"_s, u"Deux orchestres"_s},
                          {u"tags"_s, QJsonArray{u"Danse"_s, u"Sport"_s}},
                          {u"lieu"_s, u"Place"_s},
                          {u"link"_s, u"https://a.fr"_s},
                          {u"organise_par"_s, u"La Grange"_s},
                          {u"contact_email"_s, u"a@b.fr"_s},
                          {u"date_texte"_s, u"2026-06-14"_s},
                          {u"heure_texte"_s, u"18:30"_s},
                          {u"starts_at"_s, u"2026-06-14T16:30:00Z"_s}}));
    QCOMPARE(form.created, 1);
}

void TestSaveEvent::untouchedTextsAreSentLetterByLetter()
{
    const QString odd = u"a\u00a0b\r\nc\u2028d\u2029e\tf\u0001g"_s + QString(50'000, u'x');
    Event event = fullEvent();
    event.titre = odd;
    event.description = odd;
    event.tags = QStringList{odd};
    event.lieu = odd;
    event.link = odd;
    event.organise_par = odd;
    event.contact_email = odd;
    const Form form(event);
    save(form);
    for (const QString &column : {u"titre"_s, u"description"_s, u"lieu"_s, u"link"_s,
                                  u"organise_par"_s, u"contact_email"_s})
        QVERIFY2(sentBody()[column].toString() == odd, qPrintable(column));
    QVERIFY(sentBody()[u"tags"][0].toString() == odd);
}

void TestSaveEvent::touchedTextsAreSentAsTyped()
{
    const Form form;
    form.retype(u"Titre"_s, u"Fête\u00a0: le\u202fbal"_s);
    auto *description = form.named<TextEditor>(u"Description"_s);
    description->setFocus();
    description->selectAll();
    type(description, u"à\u00a015\u202fh"_s);
    QTest::keyClick(description, Qt::Key_Return);
    type(description, u"« oui »"_s);
    save(form);
    QCOMPARE(sentBody()[u"titre"], u"Fête\u00a0: le\u202fbal"_s);
    QCOMPARE(sentBody()[u"description"], u"à\u00a015\u202fh\n« oui »"_s);
}

void TestSaveEvent::aTouchedEnormousTextKeepsItsEnd()
{
    Event event = fullEvent();
    event.titre = QString(100'000, u'x') + u"fin"_s;
    event.description = event.titre;
    const Form form(event);
    form.field(u"Titre"_s)->home(false);
    type(form.field(u"Titre"_s), u"y"_s);
    auto *description = form.named<TextEditor>(u"Description"_s);
    description->moveCursor(QTextCursor::Start);
    type(description, u"y"_s);
    save(form);
    QVERIFY(sentBody()[u"titre"].toString() == u'y' + event.titre);
    QVERIFY(sentBody()[u"description"].toString() == u'y' + event.titre);
}

void TestSaveEvent::textsAreTrimmedAndLeftOutWhenBlank()
{
    const Form form;
    form.retype(u"Titre"_s, u"  Fête  "_s);
    form.retype(u"Lieu"_s, u"\u00a0 "_s);
    form.retype(u"Lien"_s, u" https://a.fr "_s);
    form.retype(u"Email de contact"_s, QString());
    auto *description = form.named<TextEditor>(u"Description"_s);
    description->selectAll();
    QTest::keyClick(description, Qt::Key_Return);
    QTest::keyClick(description, Qt::Key_Space);
    save(form);
    QCOMPARE(sentBody()[u"titre"], u"Fête"_s);
    QCOMPARE(sentBody()[u"link"], u"https://a.fr"_s);
    for (const QString &column : {u"lieu"_s, u"contact_email"_s, u"description"_s})
        QVERIFY2(!sentBody().contains(column), qPrintable(column));
}

void TestSaveEvent::tagsAreSentSortedAlsoWhenThereAreNone()
{
    Event event = fullEvent();
    event.tags = QStringList{u"Sport"_s};
    const Form one(event);
    one.choose(u"Tags"_s, u"Repas"_s);
    one.choose(u"Tags"_s, u"Conférence"_s);
    save(one);
    QCOMPARE(sentBody()[u"tags"], (QJsonArray{u"Conférence"_s, u"Repas"_s, u"Sport"_s}));
    const Form none(event);
    none.choose(u"Tags"_s, u"Sport"_s);
    save(none);
    QCOMPARE(sentBody(1)[u"tags"], QJsonArray());
}

void TestSaveEvent::anotherOrganiserIsSentBackUnchanged()
{
    Event event = fullEvent();
    event.organise_par = u"Club\u00a0de marche"_s;
    save(Form(event));
    QCOMPARE(sentBody()[u"organise_par"], u"Club\u00a0de marche"_s);
}

void TestSaveEvent::anOrganiserTypedByHandIsSentTrimmed()
{
    const Form form;
    form.choose(u"Organisé par"_s, u"Autre"_s);
    type(form.field(u"Préciser"_s), u"  Club "_s);
    save(form);
    QCOMPARE(sentBody()[u"organise_par"], u"Club"_s);
}

void TestSaveEvent::aBlankOrganiserIsLeftOut()
{
    const Form form;
    form.choose(u"Organisé par"_s, u"Autre"_s);
    type(form.field(u"Préciser"_s), u"  "_s);
    save(form);
    QVERIFY(!sentBody().contains(u"organise_par"_s));
}

void TestSaveEvent::aHiddenOrganiserIsNotSent()
{
    const Form form;
    form.choose(u"Organisé par"_s, u"Autre"_s);
    type(form.field(u"Préciser"_s), u"Club"_s);
    form.choose(u"Organisé par"_s, u"Ainés rurauxs"_s);
    save(form);
    QCOMPARE(sentBody()[u"organise_par"], u"Ainés rurauxs"_s);
}

void TestSaveEvent::anEventWithoutDescriptionIsGivenTheSample()
{
    Event event = fullEvent();
    event.description.reset();
    save(Form(event));
    QCOMPARE(sentBody()[u"description"], u"Pour les enfants de 4 à 11 ans."_s);
}

void TestSaveEvent::theChosenDayAndTimeAreSent()
{
    const Form form;
    auto *date = form.named<DateField>(u"Date"_s);
    date->setFocus(Qt::TabFocusReason);
    date->setSelectedSection(QDateTimeEdit::DaySection);
    type(date, u"14062025"_s);
    auto *time = form.named<TimeField>(u"Heure"_s);
    time->setFocus(Qt::TabFocusReason);
    time->setSelectedSection(QDateTimeEdit::HourSection);
    type(time, u"1530"_s);
    save(form);
    QCOMPARE(sentBody()[u"date_texte"], u"2025-06-14"_s);
    QCOMPARE(sentBody()[u"heure_texte"], u"15:30"_s);
    QCOMPARE(sentBody()[u"starts_at"], u"2025-06-14T13:30:00Z"_s);
}

void TestSaveEvent::anUntouchedDayOfLongAgoIsSentAsItWas()
{
    Event event = fullEvent();
    event.starts_at =
        Instant{QDateTime(QDate(1700, 2, 28), QTime(12, 0), Qt::UTC).toMSecsSinceEpoch()};
    save(Form(event));
    QCOMPARE(sentBody()[u"date_texte"], u"1700-02-28"_s);
    event.starts_at.reset();
    event.date_texte = u"0050-06-15"_s;
    const Form form(event);
    form.retype(u"Titre"_s, u"Fête"_s);
    save(form);
    // Before the calendar's reform, when the 15th was called the 17th.
    QCOMPARE(sentBody(1)[u"date_texte"], u"0050-06-17"_s);
}

void TestSaveEvent::theMemberAtTheTimeOfSavingOwnsTheEvent()
{
    const Form form;
    m_server.answer(HttpAnswer::whole(200, "{\"access_token\":\"b\",\"user\":{\"id\":\"autre\"}}"));
    QCOMPARE(outcomeOf(SupabaseClient::signIn(u"b@c.fr"_s, u"p"_s)).failure(), QString());
    m_server.answer(written);
    save(form);
    QCOMPARE(sentBody(1)[u"user_id"], u"autre"_s);
    QCOMPARE(sentBody(1)[u"contact_email"], u"camille@exemple.fr"_s);
}

void TestSaveEvent::theFormClosesAfterTheCompletion()
{
    // A completion that takes its time, as reloading the list does.
    m_server.answerInTurn({written, HttpAnswer::whole(200, "[]").late(50)});
    QStringList order;
    struct Completion {
        static QCoro::Task<void> run(QStringList *order)
        {
            order->append(u"begun"_s);
            auto fetching = SupabaseClient::fetchEvents();
            co_await fetching;
            order->append(u"ended"_s);
        }
    };
    const Form form({}, [&order] { return Completion::run(&order); });
    connect(form.view, &Sheet::closed, this, [&order] { order.append(u"closed"_s); });
    form.pressSave();
    QTRY_COMPARE(order, QStringList{u"begun"_s});
    QVERIFY(form.isOpen());
    QVERIFY(!form.save()->isEnabled());
    QTRY_COMPARE(order, (QStringList{u"begun"_s, u"ended"_s, u"closed"_s}));
    QVERIFY(!form.isOpen());
}

void TestSaveEvent::aFailureRunsNoCompletion()
{
    m_server.answer(HttpAnswer::whole(500, "non"));
    const Form form;
    QCOMPARE(failure(form), u"HTTP 500: non"_s);
    QCOMPARE(form.created, 0);
}

void TestSaveEvent::pressingTwiceSendsOnce()
{
    m_server.answer(written.late(50));
    const Form form;
    form.pressSave();
    QVERIFY(!form.save()->isEnabled());
    form.pressSave();
    QTest::keyClick(form.save(), Qt::Key_Space);
    QTRY_VERIFY(!form.isOpen());
    QCOMPARE(requests(), 1);
    QCOMPARE(form.created, 1);
}

void TestSaveEvent::theFormStaysAliveWhileItSaves()
{
    m_server.answer(written.late(100));
    const Form form;
    const EventLoopChecker checker;
    form.pressSave();
    type(form.field(u"Lieu"_s), u"x"_s);
    QVERIFY(form.field(u"Lieu"_s)->text().endsWith(u'x'));
    QVERIFY(!form.save()->isEnabled());
    QTRY_VERIFY(!form.isOpen());
    QVERIFY(checker.ticks() > 10);
}

void TestSaveEvent::whatIsTypedWhileSavingIsNotSent()
{
    m_server.answer(HttpAnswer::whole(500, "non").late(30));
    const Form form;
    form.pressSave();
    type(form.field(u"Titre"_s), u" bis"_s);
    QTRY_VERIFY(shownError(form));
    QCOMPARE(sentBody()[u"titre"], u"Atelier création"_s);
    QCOMPARE(form.field(u"Titre"_s)->text(), u"Atelier création bis"_s);
}

void TestSaveEvent::aRefusalShowsTheReasonAndKeepsEverything()
{
    m_server.answer(HttpAnswer::whole(401, "{\"message\":\"JWT expired\"}"));
    const Form form;
    form.retype(u"Titre"_s, u"Fête"_s);
    form.choose(u"Tags"_s, u"Repas"_s);
    form.choose(u"Organisé par"_s, u"Autre"_s);
    type(form.field(u"Préciser"_s), u"Club"_s);
    QVERIFY(!shownError(form));
    QCOMPARE(failure(form), u"HTTP 401: {\"message\":\"JWT expired\"}"_s);
    QVERIFY(form.isOpen());
    QVERIFY(form.save()->isEnabled());
    QCOMPARE(form.field(u"Titre"_s)->text(), u"Fête"_s);
    QCOMPARE(form.named<PopupLabel>(u"Tags"_s)->label(), u"Atelier, Jeune public, Repas"_s);
    QCOMPARE(form.field(u"Préciser"_s)->text(), u"Club"_s);
    QCOMPARE(requests(), 1);
}

void TestSaveEvent::aRefusedFormCanBeSavedAgain()
{
    m_server.answerInTurn({HttpAnswer::whole(500, "non"), written});
    const Form form;
    QCOMPARE(failure(form), u"HTTP 500: non"_s);
    save(form);
    QCOMPARE(requests(), 2);
    QCOMPARE(form.created, 1);
    QCOMPARE(sentBody(0)[u"titre"], sentBody(1)[u"titre"]);
}

void TestSaveEvent::aNewAttemptTakesTheOldReasonAway()
{
    m_server.answerInTurn({HttpAnswer::whole(500, "non"), written.late(50)});
    const Form form;
    QCOMPARE(failure(form), u"HTTP 500: non"_s);
    form.pressSave();
    QVERIFY(!shownError(form));
    QTRY_VERIFY(!form.isOpen());
}

void TestSaveEvent::afterARefusalTheKeyboardIsBackOnTheButton()
{
    m_server.answer(HttpAnswer::whole(500, "non").late(20));
    const Form form;
    form.save()->setFocus(Qt::TabFocusReason);
    QTest::keyClick(form.save(), Qt::Key_Space);
    QVERIFY(!QApplication::focusWidget()->inherits("QLineEdit"));
    QTRY_VERIFY(form.save()->hasFocus());
    QVERIFY(shownError(form));
}

void TestSaveEvent::afterARefusalTheKeyboardStaysWhereItWent()
{
    m_server.answer(HttpAnswer::whole(500, "non").late(20));
    const Form form;
    form.pressSave();
    form.field(u"Lieu"_s)->setFocus(Qt::TabFocusReason);
    QTRY_VERIFY(shownError(form));
    QVERIFY(form.field(u"Lieu"_s)->hasFocus());
}

void TestSaveEvent::aReasonIsShownLetterByLetter()
{
    m_server.answer(HttpAnswer::whole(400, "<b>Titre</b> &amp; \"lieu\""));
    const Form form;
    QCOMPARE(failure(form), u"HTTP 400: <b>Titre</b> &amp; \"lieu\""_s);
    QCOMPARE(shownError(form)->findChild<QTextEdit *>()->toPlainText(),
             u"HTTP 400: <b>Titre</b> &amp; \"lieu\""_s);
    QCOMPARE(QAccessible::queryAccessibleInterface(shownError(form))->role(),
             QAccessible::AlertMessage);
}

void TestSaveEvent::aLongReasonScrollsAndIsCopiedWhole()
{
    const QByteArray reason = QByteArray("Une longue explication. ").repeated(20'000);
    m_server.answer(HttpAnswer::whole(500, reason));
    const Form form;
    const int before = form.view->card().height();
    QCOMPARE(failure(form), u"HTTP 500: "_s + QString::fromUtf8(reason));
    QTRY_COMPARE(form.view->card().height(), before + 4 * lineHeight(appFont(13)) + 10);
    auto *text = shownError(form)->findChild<QTextEdit *>();
    QVERIFY(text->verticalScrollBar()->maximum() > 0);
    text->setFocus();
    QTest::keySequence(text, QKeySequence::SelectAll);
    QTest::keySequence(text, QKeySequence::Copy);
    QCOMPARE(QApplication::clipboard()->text(), shownError(form)->text());
}

void TestSaveEvent::anUnreachableServiceIsToldInTheForm_data()
{
    QTest::addColumn<HttpAnswer>("answer");
    QTest::newRow("the connection ends") << HttpAnswer::fin();
    QTest::newRow("the connection is torn down") << HttpAnswer::rst();
    QTest::newRow("the connection ends later") << HttpAnswer::fin().late(30);
    QTest::newRow("the reply is cut") << HttpAnswer::cut(201, "[{", 1000);
    QTest::newRow("no HTTP") << HttpAnswer::raw("bonjour\r\n\r\n").thenFin();
}

void TestSaveEvent::anUnreachableServiceIsToldInTheForm()
{
    QFETCH(HttpAnswer, answer);
    m_server.answer(answer);
    const Form form;
    form.retype(u"Titre"_s, u"Fête"_s);
    const QString reason = failure(form);
    QVERIFY2(!reason.isEmpty() && reason != u"(none shown)", qPrintable(reason));
    QVERIFY(form.save()->isEnabled());
    QCOMPARE(form.field(u"Titre"_s)->text(), u"Fête"_s);
    QCOMPARE(form.created, 0);
    // What may have been written is never sent again by itself.
    QTest::qWait(50);
    QCOMPARE(requests(), 1);
}

void TestSaveEvent::aServiceThatIsGoneIsToldInTheForm()
{
    // Nobody reads the request: the connection ends with its first byte.
    m_server.answer(HttpAnswer::rst());
    const Form form(fullEvent());
    QVERIFY(!failure(form).isEmpty());
    m_server.answer(written);
    save(form);
    QCOMPARE(form.created, 1);
    QCOMPARE(requests(), 2);
}

void TestSaveEvent::signedOutTheFormSaysSoAndSendsNothing()
{
    const Form form;
    SupabaseClient::signOut();
    QCOMPARE(failure(form), u"Vous devez être connecté."_s);
    QVERIFY(form.save()->isEnabled());
    QCOMPARE(requests(), 0);
}

void TestSaveEvent::aFormClosedWhileSavingIsSavedAllTheSame()
{
    m_server.answer(written.late(50));
    const Form form;
    form.retype(u"Titre"_s, u"Fête"_s);
    form.pressSave();
    form.press(u"Annuler"_s);
    QVERIFY(!form.isOpen());
    QCOMPARE(form.created, 0);
    QTRY_COMPARE(form.created, 1);
    QCOMPARE(requests(), 1);
    QVERIFY(!form.isOpen());
}

void TestSaveEvent::aFormClosedWhileItsSaveFailsIsJustGone()
{
    m_server.answer(HttpAnswer::whole(500, "non").late(30));
    const Form form;
    form.pressSave();
    form.press(u"Annuler"_s);
    QSignalSpy answered(&m_server, &HttpServer::answered);
    QVERIFY(answered.wait());
    QTest::qWait(50);
    QVERIFY(!form.isOpen());
    QCOMPARE(form.created, 0);
}

void TestSaveEvent::aFormDestroyedWhileSavingIsSavedAllTheSame()
{
    m_server.answer(written.late(50));
    const Form form;
    form.pressSave();
    delete form.view;
    QTRY_COMPARE(form.created, 1);
    QCOMPARE(requests(), 1);
}

void TestSaveEvent::aWindowDestroyedWhileSavingIsSavedAllTheSame()
{
    m_server.answer(written.late(50));
    Form form(fullEvent());
    form.pressSave();
    form.window.reset();
    QVERIFY(!form.view);
    QTRY_COMPARE(form.created, 1);
    QCOMPARE(requests(), 1);
}

void TestSaveEvent::aFormDestroyedInItsCompletionIsJustGone()
{
    int completed = 0;
    QPointer<AddEventView> doomed;
    struct Completion {
        static QCoro::Task<void> run(QPointer<AddEventView> *view, int *completed)
        {
            delete view->data();
            ++*completed;
            co_return;
        }
    };
    const Form form({}, [&] { return Completion::run(&doomed, &completed); });
    doomed = form.view;
    form.pressSave();
    QTRY_COMPARE(completed, 1);
    QVERIFY(!form.view);
}

int main(int argc, char **argv)
{
    const QApplication application(argc, argv);
    installAccessibility();
    const QTemporaryDir folder;
    HttpServer server;
    // The configuration is read once, at the first use of the service.
    qputenv("XDG_CONFIG_HOME", QFile::encodeName(folder.path()));
    qputenv("SUPABASE_URL", server.base().toUtf8());
    qputenv("SUPABASE_KEY", "clef");
    TestSaveEvent test(server);
    const int result = QTest::qExec(&test, argc, argv);
    server.hangUp();
    return result;
}

#include "test_save_event.moc"
