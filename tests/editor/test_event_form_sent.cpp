// The rules of the event form: what it sends of the texts, the tags, the day and the time.

#include "editor/EventForm.h"
#include "editor/PickedTime.h"
#include "platform/Text.h"
#include "support/NewForm.h"
#include "support/Vectors.h"

#include <QDateTime>
#include <QRegularExpression>
#include <QSet>
#include <QTest>

#include <optional>

using namespace Qt::StringLiterals;
using namespace NewForm;

class TestEventFormSent : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void optionalTextsAreTrimmedAndNoneWhenBlank();
    void aTitleIsTrimmedAndNeverMissing();
    void everyTextIsTrimmedAsTheServiceDoes();
    void aTitleOfWhiteSpaceIsNotEnough_data();
    void aTitleOfWhiteSpaceIsNotEnough();
    void tagsAreAListAlsoWhenThereAreNone();
    void tagsAreSentOnceAndByCharacterCode();
    void tagsOfTwoSpellingsAreOne();
    void aFormToggledBackIsUnchanged();
    void dayAndTimeAreWrittenInTheUsersOwnCalendarAndDigits();
    void dayAndTimeBecomeOneInstant();
    void aPickedDayIsThatDayInEveryZone_data();
    void aPickedDayIsThatDayInEveryZone();
    void aPickedTimeIsThatTimeOnADayThatSkipsIt();
    void aFreshIdentifierIsAnUpperCaseUuid();
};

void TestEventFormSent::optionalTextsAreTrimmedAndNoneWhenBlank()
{
    EventForm form = newForm();
    form.description = u"\n  \n"_s;
    form.lieu = u" Place "_s;
    form.link = u"\t"_s;
    form.contactEmail = u" a@b.fr\n"_s;
    const auto payload = sent(form);
    QCOMPARE(payload.description, std::nullopt);
    QCOMPARE(payload.lieu, u"Place"_s);
    QCOMPARE(payload.link, std::nullopt);
    QCOMPARE(payload.contact_email, u"a@b.fr"_s);
}

void TestEventFormSent::aTitleIsTrimmedAndNeverMissing()
{
    EventForm form = newForm();
    form.title = u"  Fête  "_s;
    QCOMPARE(sent(form).titre, u"Fête"_s);
    form.title = u" "_s;
    QCOMPARE(sent(form).titre, QString());
}

void TestEventFormSent::everyTextIsTrimmedAsTheServiceDoes()
{
    QVERIFY(
        Vectors::check(u"trimming.json"_s, {{u"text"_s}, {u"trimmed"_s}}, [](const auto &asked) {
            EventForm form = newForm();
            form.title = form.description = form.lieu = form.link = form.contactEmail =
                form.organiseParCustom = asked[u"text"].toString();
            form.organisePar = u"Autre"_s;
            const auto payload = sent(form);
            QJsonArray given{payload.titre};
            for (const auto &text : {payload.description, payload.lieu, payload.link,
                                     payload.contact_email, payload.organise_par})
                given.append(text ? QJsonValue(*text) : QJsonValue());
            const QString wanted = asked[u"trimmed"].toString();
            const QJsonValue optional = wanted.isEmpty() ? QJsonValue() : QJsonValue(wanted);
            return Vectors::Answer{
                QJsonArray{wanted, optional, optional, optional, optional, optional}, given};
        }));
}

void TestEventFormSent::aTitleOfWhiteSpaceIsNotEnough_data()
{
    QTest::addColumn<QString>("title");
    QTest::addColumn<bool>("isEnough");
    QTest::newRow("nothing") << QString() << false;
    QTest::newRow("spaces") << u"   "_s << false;
    QTest::newRow("a no-break and a zero-width space") << u"\u00a0\u200b"_s << false;
    QTest::newRow("a line break") << u"\u2029\u0085"_s << false;
    QTest::newRow("a letter") << u" a "_s << true;
    QTest::newRow("a byte-order mark, which is no white space") << u"\ufeff"_s << true;
}

void TestEventFormSent::aTitleOfWhiteSpaceIsNotEnough()
{
    QFETCH(QString, title);
    EventForm form = newForm();
    form.title = title;
    QTEST(isComplete(form), "isEnough");
}

void TestEventFormSent::tagsAreAListAlsoWhenThereAreNone()
{
    EventForm form = newForm();
    form.selectedTags = {};
    QCOMPARE(sent(form).tags, QStringList());
}

void TestEventFormSent::tagsAreSentOnceAndByCharacterCode()
{
    QVERIFY(Vectors::check(
        u"sorting.json"_s,
        {{u"texts"_s, Vectors::List}, {u"sorted"_s, Vectors::List}, {u"distinct"_s, Vectors::List}},
        [](const auto &asked) {
            EventForm form = newForm();
            form.selectedTags = TagSet(Vectors::texts(asked[u"texts"]));
            return Vectors::Answer{Vectors::spelledAlike(Vectors::texts(asked[u"distinct"])),
                                   Vectors::spelledAlike(sent(form).tags.value())};
        }));
}

void TestEventFormSent::tagsOfTwoSpellingsAreOne()
{
    QVERIFY(Vectors::check(u"equality.json"_s,
                           {{u"texts"_s, Vectors::List}, {u"same"_s, Vectors::Flag}},
                           [](const auto &asked) {
                               const QString a = asked[u"texts"][0].toString();
                               const QString b = asked[u"texts"][1].toString();
                               const bool equal = asked[u"same"].toBool();
                               return Vectors::Answer{QJsonArray{equal, equal ? 1 : 2, equal},
                                                      QJsonArray{TagSet({a}).contains(b),
                                                                 TagSet({a, b}).sorted().size(),
                                                                 TagSet({a}).toggled(b).isEmpty()}};
                           }));
}

void TestEventFormSent::aFormToggledBackIsUnchanged()
{
    Event event = bareEvent();
    event.tags = QStringList{u"Confe\u0301rence"_s, u"Sport"_s};
    const EventForm before = initialForm(event, {}, now);
    EventForm form = before;
    form.selectedTags = form.selectedTags.toggled(u"Conférence"_s);
    QCOMPARE(form.selectedTags.sorted(), QStringList{u"Sport"_s});
    QVERIFY(!(form == before));
    form.selectedTags = form.selectedTags.toggled(u"Conférence"_s);
    QVERIFY(form == before);
}

void TestEventFormSent::dayAndTimeAreWrittenInTheUsersOwnCalendarAndDigits()
{
    QVERIFY(Vectors::check(
        u"form-texts.json"_s,
        {{u"ms"_s, Vectors::Number},
         {u"locale"_s},
         {u"zone"_s},
         {u"date_texte"_s},
         {u"heure_texte"_s}},
        [](const auto &asked) {
            EventForm form = newForm();
            form.eventDate = form.eventTime = {asked[u"ms"].toInteger()};
            const Calendar calendar(asked[u"locale"].toString(), asked[u"zone"].toString());
            const auto payload = payloadOf(form, u"7"_s, {}, calendar);
            return Vectors::Answer{QJsonArray{asked[u"date_texte"], asked[u"heure_texte"]},
                                   QJsonArray{*payload.date_texte, *payload.heure_texte}};
        }));
}

void TestEventFormSent::dayAndTimeBecomeOneInstant()
{
    QVERIFY(Vectors::check(
        u"joins.json"_s,
        {{u"from"_s, Vectors::Number}, {u"time"_s, Vectors::Number}, {u"zone"_s}, {u"starts_at"_s}},
        [](const auto &asked) {
            EventForm form = newForm();
            form.eventDate = {asked[u"from"].toInteger()};
            form.eventTime = {asked[u"time"].toInteger()};
            return Vectors::Answer{asked[u"starts_at"],
                                   *sent(form, asked[u"zone"].toString()).starts_at};
        }));
}

void TestEventFormSent::aPickedDayIsThatDayInEveryZone_data()
{
    QTest::addColumn<QString>("zone");
    QTest::addColumn<QDate>("day");
    QTest::newRow("Paris") << u"Europe/Paris"_s << QDate(2026, 11, 14);
    QTest::newRow("Paris, the clock put forward") << u"Europe/Paris"_s << QDate(2026, 3, 29);
    QTest::newRow("a day that does not begin at 00:00")
        << u"America/Sao_Paulo"_s << QDate(2018, 11, 4);
    QTest::newRow("far east") << u"Pacific/Kiritimati"_s << QDate(2026, 1, 1);
    QTest::newRow("far west") << u"Pacific/Pago_Pago"_s << QDate(2026, 12, 31);
    QTest::newRow("long ago") << u"Europe/Paris"_s << QDate(1700, 2, 28);
}

void TestEventFormSent::aPickedDayIsThatDayInEveryZone()
{
    QFETCH(QString, zone);
    QFETCH(QDate, day);
    const WallClock clock(zone);
    EventForm form = newForm();
    form.eventDate = instantOnDay(day, clock);
    form.eventTime = instantAtTime(QTime(23, 59), clock);
    QCOMPARE(shownDay(form.eventDate, clock), day);
    QCOMPARE(shownTime(form.eventTime, clock), QTime(23, 59));
    QCOMPARE(sent(form, zone).date_texte, day.toString(Qt::ISODate));
    QCOMPARE(sent(form, zone).heure_texte, u"23:59"_s);
}

void TestEventFormSent::aPickedTimeIsThatTimeOnADayThatSkipsIt()
{
    const WallClock clock(u"Europe/Paris"_s);
    EventForm form = newForm();
    form.eventDate = instantOnDay(QDate(2026, 3, 29), clock);
    form.eventTime = instantAtTime(QTime(2, 30), clock);
    const auto payload = sent(form);
    QCOMPARE(payload.heure_texte, u"02:30"_s);
    QCOMPARE(payload.starts_at, u"2026-03-29T01:30:00Z"_s); // 03:30 there
}

void TestEventFormSent::aFreshIdentifierIsAnUpperCaseUuid()
{
    static const QRegularExpression form(
        u"^[0-9A-F]{8}-[0-9A-F]{4}-4[0-9A-F]{3}-[89AB][0-9A-F]{3}-[0-9A-F]{12}$"_s);
    QSet<QString> identifiers;
    for (int i = 0; i < 100; ++i) {
        const QString identifier = freshIdentifier();
        QVERIFY2(form.match(identifier).hasMatch(), qPrintable(identifier));
        identifiers.insert(identifier);
    }
    QCOMPARE(identifiers.size(), 100);
}

QTEST_MAIN(TestEventFormSent)
#include "test_event_form_sent.moc"
