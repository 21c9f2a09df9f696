// The rules of the event form: what it opens with, and whom it takes for the organiser. What it
// sends is in test_event_form_sent.cpp.

#include "editor/EventForm.h"
#include "support/NewForm.h"

#include <QDateTime>
#include <QTest>

#include <optional>

using namespace Qt::StringLiterals;
using namespace NewForm;

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

QTEST_MAIN(TestEventForm)
#include "test_event_form.moc"
