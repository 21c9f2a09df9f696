// What saving sends of each field of the event form.

#include "controls/DateField.h"
#include "controls/TextEditor.h"
#include "controls/TimeField.h"
#include "platform/Gmt.h"
#include "support/FormTest.h"
#include "support/ViewMain.h"

#include <QJsonArray>
#include <QJsonObject>

using namespace Qt::StringLiterals;
using namespace FormTest;

namespace {

const HttpAnswer written = HttpAnswer::whole(201, "[{}]");

} // namespace

class TestSavedFields : public QObject {
    Q_OBJECT

    HttpServer &m_server;
    Sent m_sent{m_server};

public:
    explicit TestSavedFields(HttpServer &server)
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
};

void TestSavedFields::init()
{
    signIn(m_server);
    m_server.answer(written);
    m_sent = Sent(m_server);
}

void TestSavedFields::creatingWithoutTouchingAnythingSendsTheSamplesOnce()
{
    const QDateTime before = QDateTime::currentDateTime();
    const Form form;
    QVERIFY(saves(form));
    const QDateTime after = QDateTime::currentDateTime();
    QCOMPARE(m_sent.count(), 1);
    QCOMPARE(m_sent.request().method, "POST");
    QCOMPARE(m_sent.request().target, "/rest/v1/events");
    QCOMPARE(m_sent.request().header("Authorization"), "Bearer jeton");
    QJsonObject body = m_sent.body();
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

void TestSavedFields::everyNewEventHasAnIdentifierOfItsOwn()
{
    QVERIFY(saves(Form()));
    QVERIFY(saves(Form()));
    QVERIFY(m_sent.body(0)[u"id"] != m_sent.body(1)[u"id"]);
}

void TestSavedFields::savingUnchangedSendsTheEventAsItWas()
{
    const Form form(fullEvent());
    QVERIFY(saves(form));
    QCOMPARE(m_sent.count(), 1);
    QCOMPARE(m_sent.request().method, "PATCH");
    QCOMPARE(m_sent.request().target, "/rest/v1/events?id=eq.7");
    QCOMPARE(m_sent.body(),
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

void TestSavedFields::untouchedTextsAreSentLetterByLetter()
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
    QVERIFY(saves(form));
    for (const QString &column : {u"titre"_s, u"description"_s, u"lieu"_s, u"link"_s,
                                  u"organise_par"_s, u"contact_email"_s})
        QVERIFY2(m_sent.body()[column].toString() == odd, qPrintable(column));
    QVERIFY(m_sent.body()[u"tags"][0].toString() == odd);
}

void TestSavedFields::touchedTextsAreSentAsTyped()
{
    const Form form;
    form.retype(u"Titre"_s, u"Fête\u00a0: le\u202fbal"_s);
    auto *description = form.named<TextEditor>(u"Description"_s);
    description->setFocus();
    description->selectAll();
    type(description, u"à\u00a015\u202fh"_s);
    QTest::keyClick(description, Qt::Key_Return);
    type(description, u"« oui »"_s);
    QVERIFY(saves(form));
    QCOMPARE(m_sent.body()[u"titre"], u"Fête\u00a0: le\u202fbal"_s);
    QCOMPARE(m_sent.body()[u"description"], u"à\u00a015\u202fh\n« oui »"_s);
}

void TestSavedFields::aTouchedEnormousTextKeepsItsEnd()
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
    QVERIFY(saves(form));
    QVERIFY(m_sent.body()[u"titre"].toString() == u'y' + event.titre);
    QVERIFY(m_sent.body()[u"description"].toString() == u'y' + event.titre);
}

void TestSavedFields::textsAreTrimmedAndLeftOutWhenBlank()
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
    QVERIFY(saves(form));
    QCOMPARE(m_sent.body()[u"titre"], u"Fête"_s);
    QCOMPARE(m_sent.body()[u"link"], u"https://a.fr"_s);
    for (const QString &column : {u"lieu"_s, u"contact_email"_s, u"description"_s})
        QVERIFY2(!m_sent.body().contains(column), qPrintable(column));
}

void TestSavedFields::tagsAreSentSortedAlsoWhenThereAreNone()
{
    Event event = fullEvent();
    event.tags = QStringList{u"Sport"_s};
    const Form one(event);
    one.choose(u"Tags"_s, u"Repas"_s);
    one.choose(u"Tags"_s, u"Conférence"_s);
    QVERIFY(saves(one));
    QCOMPARE(m_sent.body().value(u"tags"_s),
             QJsonValue(QJsonArray{u"Conférence"_s, u"Repas"_s, u"Sport"_s}));
    const Form none(event);
    none.choose(u"Tags"_s, u"Sport"_s);
    QVERIFY(saves(none));
    QCOMPARE(m_sent.body(1).value(u"tags"_s), QJsonValue(QJsonArray()));
}

void TestSavedFields::anotherOrganiserIsSentBackUnchanged()
{
    Event event = fullEvent();
    event.organise_par = u"Club\u00a0de marche"_s;
    QVERIFY(saves(Form(event)));
    QCOMPARE(m_sent.body()[u"organise_par"], u"Club\u00a0de marche"_s);
}

void TestSavedFields::anOrganiserTypedByHandIsSentTrimmed()
{
    const Form form;
    form.choose(u"Organisé par"_s, u"Autre"_s);
    type(form.field(u"Préciser"_s), u"  Club "_s);
    QVERIFY(saves(form));
    QCOMPARE(m_sent.body()[u"organise_par"], u"Club"_s);
}

void TestSavedFields::aBlankOrganiserIsLeftOut()
{
    const Form form;
    form.choose(u"Organisé par"_s, u"Autre"_s);
    type(form.field(u"Préciser"_s), u"  "_s);
    QVERIFY(saves(form));
    QVERIFY(!m_sent.body().contains(u"organise_par"_s));
}

void TestSavedFields::aHiddenOrganiserIsNotSent()
{
    const Form form;
    form.choose(u"Organisé par"_s, u"Autre"_s);
    type(form.field(u"Préciser"_s), u"Club"_s);
    form.choose(u"Organisé par"_s, u"Ainés rurauxs"_s);
    QVERIFY(saves(form));
    QCOMPARE(m_sent.body()[u"organise_par"], u"Ainés rurauxs"_s);
}

void TestSavedFields::anEventWithoutDescriptionIsGivenTheSample()
{
    Event event = fullEvent();
    event.description.reset();
    QVERIFY(saves(Form(event)));
    QCOMPARE(m_sent.body()[u"description"], u"Pour les enfants de 4 à 11 ans."_s);
}

void TestSavedFields::theChosenDayAndTimeAreSent()
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
    QVERIFY(saves(form));
    QCOMPARE(m_sent.body()[u"date_texte"], u"2025-06-14"_s);
    QCOMPARE(m_sent.body()[u"heure_texte"], u"15:30"_s);
    QCOMPARE(m_sent.body()[u"starts_at"], u"2025-06-14T13:30:00Z"_s);
}

void TestSavedFields::anUntouchedDayOfLongAgoIsSentAsItWas()
{
    Event event = fullEvent();
    event.starts_at =
        Instant{QDateTime(QDate(1700, 2, 28), QTime(12, 0), inGmt).toMSecsSinceEpoch()};
    QVERIFY(saves(Form(event)));
    QCOMPARE(m_sent.body()[u"date_texte"], u"1700-02-28"_s);
    event.starts_at.reset();
    event.date_texte = u"0050-06-15"_s;
    const Form form(event);
    form.retype(u"Titre"_s, u"Fête"_s);
    QVERIFY(saves(form));
    // Before the calendar's reform, when the 15th was called the 17th.
    QCOMPARE(m_sent.body(1)[u"date_texte"], u"0050-06-17"_s);
}

void TestSavedFields::theMemberAtTheTimeOfSavingOwnsTheEvent()
{
    const Form form;
    m_server.answer(HttpAnswer::whole(200, "{\"access_token\":\"b\",\"user\":{\"id\":\"autre\"}}"));
    QCOMPARE(outcomeOf(SupabaseClient::signIn(u"b@c.fr"_s, u"p"_s)).failure(), QString());
    m_server.answer(written);
    QVERIFY(saves(form));
    QCOMPARE(m_sent.body(1)[u"user_id"], u"autre"_s);
    QCOMPARE(m_sent.body(1)[u"contact_email"], u"camille@exemple.fr"_s);
}

int main(int argc, char *argv[])
{
    return runWithService<TestSavedFields>(argc, argv);
}

#include "test_saved_fields.moc"
