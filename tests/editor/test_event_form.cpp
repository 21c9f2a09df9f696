// The rules of the event form: what it opens with, and what it sends.

#include "editor/EventForm.h"
#include "editor/PickedTime.h"
#include "platform/Text.h"
#include "support/Vectors.h"

#include <QDateTime>
#include <QRegularExpression>
#include <QSet>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

Instant at(const QString &iso)
{
    return {QDateTime::fromString(iso, Qt::ISODate).toMSecsSinceEpoch()};
}

const Instant now = at(u"2026-11-14T13:30:20Z"_s);

Event bareEvent()
{
    Event event;
    event.id = u"7"_s;
    event.titre = u"Bal"_s;
    return event;
}

EventCreatePayload sent(const EventForm &form, const QString &zone = u"Europe/Paris"_s)
{
    return payloadOf(form, u"7"_s, u"moi"_s, Calendar(u"fr_FR"_s, zone));
}

EventForm newForm()
{
    return initialForm({}, u"camille@exemple.fr"_s, now);
}

QStringList texts(const QJsonValue &list)
{
    QStringList result;
    for (const auto &text : list.toArray())
        result.append(text.toString());
    return result;
}

/// Texts as an answer that leaves open which of equal spellings is meant.
QJsonArray canonicalList(const QStringList &list)
{
    QJsonArray result;
    for (const QString &text : list)
        result.append(canonical(text));
    return result;
}

} // namespace

class TestEventForm : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void theOfferedTextsAreSpelledAsTheyAreStored();
    void aNewEventStartsFromTheSamples();
    void aNewEventSentUntouchedIsTheSamplesOfTheMoment();
    void withoutAnAccountTheContactIsLeftOpen();
    void anEventOpensWithWhatItHolds();
    void whatAnEventLacksIsFilledWithTheSamples();
    void anEmptyTextOfAnEventIsNoLackOfOne();
    void anEventWithoutTimeOpensOnItsDayAtTheTimeOfNow();
    void anOrganiserThatIsOfferedIsChosen();
    void anOrganiserOfAnotherSpellingIsChosenAndKept();
    void anOtherOrganiserIsKeptAsItIs();
    void theOrganiserTypedByHandCountsOnlyWhenChosen();
    void aBlankOrganiserTypedByHandIsNone_data();
    void aBlankOrganiserTypedByHandIsNone();
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

void TestEventForm::theOfferedTextsAreSpelledAsTheyAreStored()
{
    QCOMPARE(availableTags(),
             (QStringList{u"Vie du village"_s, u"Spectacle"_s, u"Repas"_s, u"Sport"_s,
                          u"Jeune public"_s, u"Bibliotheque"_s, u"Conférence"_s, u"Projection"_s}));
    QCOMPARE(availableOrganisers(),
             (QStringList{u"Association Culturelle"_s, u"Amis de Brunelande"_s,
                          u"Morvelle Animation"_s, u"Les Lentibulles"_s, u"Causarium"_s,
                          u"Ainés rurauxs"_s, u"Les Parents d\u2019élèves"_s, u"La Grange"_s,
                          u"La Boulangerie"_s, u"AMAP Vertelune"_s, u"Autre"_s}));
}

void TestEventForm::aNewEventStartsFromTheSamples()
{
    const EventForm form = newForm();
    QCOMPARE(form.title, u"Atelier création"_s);
    QCOMPARE(form.description, u"Pour les enfants de 4 à 11 ans."_s);
    QCOMPARE(form.selectedTags.sorted(), (QStringList{u"Atelier"_s, u"Jeune public"_s}));
    QCOMPARE(form.lieu, u"Salle Vaudrelle"_s);
    QCOMPARE(form.link, QString());
    QCOMPARE(form.organisePar, u"Association Culturelle"_s);
    QCOMPARE(form.organiseParCustom, QString());
    QCOMPARE(form.contactEmail, u"camille@exemple.fr"_s);
    QVERIFY(form.eventDate == now);
    QVERIFY(form.eventTime == now);
}

void TestEventForm::aNewEventSentUntouchedIsTheSamplesOfTheMoment()
{
    const EventCreatePayload payload = sent(newForm());
    QCOMPARE(payload.id, u"7"_s);
    QCOMPARE(payload.user_id, u"moi"_s);
    QCOMPARE(payload.titre, u"Atelier création"_s);
    QCOMPARE(payload.description, u"Pour les enfants de 4 à 11 ans."_s);
    QCOMPARE(payload.tags, (QStringList{u"Atelier"_s, u"Jeune public"_s}));
    QCOMPARE(payload.lieu, u"Salle Vaudrelle"_s);
    QCOMPARE(payload.link, std::nullopt);
    QCOMPARE(payload.organise_par, u"Association Culturelle"_s);
    QCOMPARE(payload.contact_email, u"camille@exemple.fr"_s);
    QCOMPARE(payload.date_texte, u"2026-11-14"_s);
    QCOMPARE(payload.heure_texte, u"14:30"_s);
    QCOMPARE(payload.starts_at, u"2026-11-14T13:30:00Z"_s);
}

void TestEventForm::withoutAnAccountTheContactIsLeftOpen()
{
    const EventForm form = initialForm({}, {}, now);
    QCOMPARE(form.contactEmail, QString());
    const auto payload = payloadOf(form, u"7"_s, {}, Calendar(u"fr_FR"_s, u"Europe/Paris"_s));
    QCOMPARE(payload.contact_email, std::nullopt);
    QCOMPARE(payload.user_id, std::nullopt);
}

void TestEventForm::anEventOpensWithWhatItHolds()
{
    Event event = bareEvent();
    event.description = u"Deux\r\nlignes"_s;
    event.tags = QStringList{u"Sport"_s, u"Danse"_s};
    event.lieu = u"Place"_s;
    event.link = u"https://a.fr"_s;
    event.organise_par = u"La Grange"_s;
    event.contact_email = u"a@b.fr"_s;
    event.date_texte = u"2020-01-01"_s;
    event.heure_texte = u"03:00"_s;
    event.starts_at = at(u"2026-06-14T16:30:00Z"_s);
    const EventForm form = initialForm(event, u"camille@exemple.fr"_s, now);
    QCOMPARE(form.title, u"Bal"_s);
    QCOMPARE(form.description, u"Deux\r\nlignes"_s);
    QCOMPARE(form.selectedTags.sorted(), (QStringList{u"Danse"_s, u"Sport"_s}));
    QCOMPARE(form.lieu, u"Place"_s);
    QCOMPARE(form.link, u"https://a.fr"_s);
    QCOMPARE(form.organisePar, u"La Grange"_s);
    QCOMPARE(form.contactEmail, u"a@b.fr"_s);
    // Never from the texts of day and time.
    QVERIFY(form.eventDate == *event.starts_at);
    QVERIFY(form.eventTime == *event.starts_at);
    const auto payload = sent(form);
    QCOMPARE(payload.date_texte, u"2026-06-14"_s);
    QCOMPARE(payload.heure_texte, u"18:30"_s);
    QCOMPARE(payload.starts_at, u"2026-06-14T16:30:00Z"_s);
}

void TestEventForm::whatAnEventLacksIsFilledWithTheSamples()
{
    EventForm expected = newForm();
    expected.title = u"Bal"_s;
    QVERIFY(initialForm(bareEvent(), u"camille@exemple.fr"_s, now) == expected);
}

void TestEventForm::anEmptyTextOfAnEventIsNoLackOfOne()
{
    Event event = bareEvent();
    event.titre = QString();
    event.description = u""_s;
    event.tags = QStringList();
    event.lieu = u""_s;
    event.contact_email = u""_s;
    event.organise_par = u""_s;
    const EventForm form = initialForm(event, u"camille@exemple.fr"_s, now);
    QCOMPARE(form.title, QString());
    QCOMPARE(form.description, QString());
    QVERIFY(form.selectedTags.isEmpty());
    QCOMPARE(form.lieu, QString());
    QCOMPARE(form.contactEmail, QString());
    QCOMPARE(form.organisePar, u"Autre"_s);
    QCOMPARE(form.organiseParCustom, QString());
}

void TestEventForm::anEventWithoutTimeOpensOnItsDayAtTheTimeOfNow()
{
    Event event = bareEvent();
    event.date_texte = u"2025-06-14"_s;
    event.heure_texte = u"18:30"_s;
    const EventForm form = initialForm(event, {}, now);
    QVERIFY(form.eventDate == at(u"2025-06-14T00:00:00Z"_s));
    QVERIFY(form.eventTime == now);
    event.date_texte = u"samedi"_s;
    QVERIFY(initialForm(event, {}, now).eventDate == now);
}

void TestEventForm::anOrganiserThatIsOfferedIsChosen()
{
    for (const QString &organiser : availableOrganisers()) {
        Event event = bareEvent();
        event.organise_par = organiser;
        const EventForm form = initialForm(event, {}, now);
        QCOMPARE(form.organisePar, organiser);
        QCOMPARE(form.organiseParCustom, QString());
    }
}

void TestEventForm::anOrganiserOfAnotherSpellingIsChosenAndKept()
{
    Event event = bareEvent();
    event.organise_par = u"Aine\u0301s rurauxs"_s;
    const EventForm form = initialForm(event, {}, now);
    QVERIFY(!hasCustomOrganiser(form));
    QCOMPARE(sent(form).organise_par, u"Aine\u0301s rurauxs"_s);
}

void TestEventForm::anOtherOrganiserIsKeptAsItIs()
{
    Event event = bareEvent();
    event.organise_par = u"Club de marche"_s;
    const EventForm form = initialForm(event, {}, now);
    QCOMPARE(form.organisePar, u"Autre"_s);
    QCOMPARE(form.organiseParCustom, u"Club de marche"_s);
    QCOMPARE(sent(form).organise_par, u"Club de marche"_s);
    // Nearly an offered one is another one.
    event.organise_par = u"autre"_s;
    QCOMPARE(initialForm(event, {}, now).organiseParCustom, u"autre"_s);
    event.organise_par = u"Les Parents d'élèves"_s;
    QCOMPARE(initialForm(event, {}, now).organisePar, u"Autre"_s);
}

void TestEventForm::theOrganiserTypedByHandCountsOnlyWhenChosen()
{
    EventForm form = newForm();
    form.organiseParCustom = u"  Club  "_s;
    QCOMPARE(sent(form).organise_par, u"Association Culturelle"_s);
    form.organisePar = u"Autre"_s;
    QCOMPARE(effectiveOrganiser(form), u"Club"_s);
    QCOMPARE(sent(form).organise_par, u"Club"_s);
}

void TestEventForm::aBlankOrganiserTypedByHandIsNone_data()
{
    QTest::addColumn<QString>("typed");
    QTest::newRow("nothing") << QString();
    QTest::newRow("spaces") << u"   "_s;
    QTest::newRow("line breaks and no-break spaces") << u"\r\n\u00a0\u2028"_s;
}

void TestEventForm::aBlankOrganiserTypedByHandIsNone()
{
    QFETCH(QString, typed);
    EventForm form = newForm();
    form.organisePar = u"Autre"_s;
    form.organiseParCustom = typed;
    QCOMPARE(sent(form).organise_par, std::nullopt);
}

void TestEventForm::optionalTextsAreTrimmedAndNoneWhenBlank()
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

void TestEventForm::aTitleIsTrimmedAndNeverMissing()
{
    EventForm form = newForm();
    form.title = u"  Fête  "_s;
    QCOMPARE(sent(form).titre, u"Fête"_s);
    form.title = u" "_s;
    QCOMPARE(sent(form).titre, QString());
}

void TestEventForm::everyTextIsTrimmedAsTheServiceDoes()
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

void TestEventForm::aTitleOfWhiteSpaceIsNotEnough_data()
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

void TestEventForm::aTitleOfWhiteSpaceIsNotEnough()
{
    QFETCH(QString, title);
    EventForm form = newForm();
    form.title = title;
    QTEST(isComplete(form), "isEnough");
}

void TestEventForm::tagsAreAListAlsoWhenThereAreNone()
{
    EventForm form = newForm();
    form.selectedTags = {};
    QCOMPARE(sent(form).tags, QStringList());
}

void TestEventForm::tagsAreSentOnceAndByCharacterCode()
{
    QVERIFY(Vectors::check(
        u"sorting.json"_s,
        {{u"texts"_s, Vectors::List}, {u"sorted"_s, Vectors::List}, {u"distinct"_s, Vectors::List}},
        [](const auto &asked) {
            EventForm form = newForm();
            form.selectedTags = TagSet(texts(asked[u"texts"]));
            return Vectors::Answer{canonicalList(texts(asked[u"distinct"])),
                                   canonicalList(sent(form).tags.value())};
        }));
}

void TestEventForm::tagsOfTwoSpellingsAreOne()
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

void TestEventForm::aFormToggledBackIsUnchanged()
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

void TestEventForm::dayAndTimeAreWrittenInTheUsersOwnCalendarAndDigits()
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

void TestEventForm::dayAndTimeBecomeOneInstant()
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

void TestEventForm::aPickedDayIsThatDayInEveryZone_data()
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

void TestEventForm::aPickedDayIsThatDayInEveryZone()
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

void TestEventForm::aPickedTimeIsThatTimeOnADayThatSkipsIt()
{
    const WallClock clock(u"Europe/Paris"_s);
    EventForm form = newForm();
    form.eventDate = instantOnDay(QDate(2026, 3, 29), clock);
    form.eventTime = instantAtTime(QTime(2, 30), clock);
    const auto payload = sent(form);
    QCOMPARE(payload.heure_texte, u"02:30"_s);
    QCOMPARE(payload.starts_at, u"2026-03-29T01:30:00Z"_s); // 03:30 there
}

void TestEventForm::aFreshIdentifierIsAnUpperCaseUuid()
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

QTEST_MAIN(TestEventForm)
#include "test_event_form.moc"
