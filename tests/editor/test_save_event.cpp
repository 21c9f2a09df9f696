// Saving from the event form, against a service that may be late, wrong or gone.

#include "controls/ErrorText.h"
#include "look/Fonts.h"
#include "support/EventLoopChecker.h"
#include "support/FormTest.h"
#include "support/ViewMain.h"

#include <QApplication>
#include <QClipboard>
#include <QScrollBar>
#include <QSignalSpy>
#include <QTextEdit>

#include <stdexcept>

using namespace Qt::StringLiterals;
using namespace FormTest;

namespace {

const HttpAnswer written = HttpAnswer::whole(201, "[{}]");

} // namespace

class TestSaveEvent : public QObject {
    Q_OBJECT

    HttpServer &m_server;
    Sent m_sent{m_server};

public:
    explicit TestSaveEvent(HttpServer &server)
        : m_server(server)
    {
    }

private Q_SLOTS:
    void init();

    void theFormClosesAfterTheCompletion();
    void aFailureRunsNoCompletion();
    void aCompletionThatFailsLeavesNoFormBusy();
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
    m_sent = Sent(m_server);
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

void TestSaveEvent::aCompletionThatFailsLeavesNoFormBusy()
{
    struct Completion {
        static QCoro::Task<void> run()
        {
            auto fetching = SupabaseClient::fetchEvents();
            co_await fetching;
            throw std::runtime_error("gone");
        }
    };
    m_server.answerInTurn({written, HttpAnswer::whole(200, "[]")});
    QTest::ignoreMessage(QtWarningMsg, "After a save: An unexpected error occurred (gone).");
    const Form form({}, [] { return Completion::run(); });
    QVERIFY(saves(form));
    QCOMPARE(m_sent.count(), 2);
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
    QCOMPARE(m_sent.count(), 1);
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
    QCOMPARE(m_sent.body()[u"titre"], u"Atelier création"_s);
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
    QCOMPARE(m_sent.count(), 1);
}

void TestSaveEvent::aRefusedFormCanBeSavedAgain()
{
    m_server.answerInTurn({HttpAnswer::whole(500, "non"), written});
    const Form form;
    QCOMPARE(failure(form), u"HTTP 500: non"_s);
    QVERIFY(saves(form));
    QCOMPARE(m_sent.count(), 2);
    QCOMPARE(form.created, 1);
    QCOMPARE(m_sent.body(0)[u"titre"], m_sent.body(1)[u"titre"]);
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
             QAccessible::Notification);
}

void TestSaveEvent::aLongReasonScrollsAndIsCopiedWhole()
{
    const QByteArray reason = QByteArray("Une longue explication. ").repeated(20'000);
    m_server.answer(HttpAnswer::whole(500, reason));
    const Form form;
    form.window->resize(760, 780);
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
    QCOMPARE(m_sent.count(), 1);
}

void TestSaveEvent::aServiceThatIsGoneIsToldInTheForm()
{
    // Nobody reads the request: the connection ends with its first byte.
    m_server.answer(HttpAnswer::rst());
    const Form form(fullEvent());
    QVERIFY(!failure(form).isEmpty());
    m_server.answer(written);
    QVERIFY(saves(form));
    QCOMPARE(form.created, 1);
    QCOMPARE(m_sent.count(), 2);
}

void TestSaveEvent::signedOutTheFormSaysSoAndSendsNothing()
{
    const Form form;
    SupabaseClient::signOut();
    QCOMPARE(failure(form), u"Vous devez être connecté."_s);
    QVERIFY(form.save()->isEnabled());
    QCOMPARE(m_sent.count(), 0);
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
    QCOMPARE(m_sent.count(), 1);
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
    QCOMPARE(m_sent.count(), 1);
}

void TestSaveEvent::aWindowDestroyedWhileSavingIsSavedAllTheSame()
{
    m_server.answer(written.late(50));
    Form form(fullEvent());
    form.pressSave();
    form.window.reset();
    QVERIFY(!form.view);
    QTRY_COMPARE(form.created, 1);
    QCOMPARE(m_sent.count(), 1);
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

int main(int argc, char *argv[])
{
    return runWithService<TestSaveEvent>(argc, argv);
}

#include "test_save_event.moc"
