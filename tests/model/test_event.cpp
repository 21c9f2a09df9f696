#include "model/Event.h"

#include <QTest>

#include <optional>

using namespace Qt::StringLiterals;

class TestEvent : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void theStartOrdersAnEvent();
    void theDayAsTextOrdersAnEventWithoutAStart();
    void aDayThatIsNoneLeavesAnEventWithoutOrder_data();
    void aDayThatIsNoneLeavesAnEventWithoutOrder();
    void theColumnsAreThoseTheServiceIsAskedFor();
};

void TestEvent::theStartOrdersAnEvent()
{
    Event event;
    event.starts_at = Instant{1'749'918'600'000};
    event.date_texte = u"2020-01-01"_s;
    QCOMPARE(event.sortDate(), event.starts_at);
}

void TestEvent::theDayAsTextOrdersAnEventWithoutAStart()
{
    Event event;
    event.date_texte = u"2025-06-14"_s;
    event.heure_texte = u"18:30"_s;
    event.ts = Instant{1};
    QCOMPARE(event.sortDate(), (Instant{1'749'859'200'000}));
}

void TestEvent::aDayThatIsNoneLeavesAnEventWithoutOrder_data()
{
    QTest::addColumn<QString>("day");
    QTest::newRow("empty") << u""_s;
    QTest::newRow("a word") << u"samedi"_s;
    QTest::newRow("not trimmed") << u" 2025-06-14"_s;
    QTest::newRow("a whole instant") << u"2025-06-14T18:30:00Z"_s;
    QTest::newRow("other digits") << u"\u0662\u0660\u0662\u0666-\u0660\u0661-\u0660\u0661"_s;
}

void TestEvent::aDayThatIsNoneLeavesAnEventWithoutOrder()
{
    QFETCH(QString, day);
    Event event;
    event.ts = Instant{1'749'918'600'000};
    QCOMPARE(event.sortDate(), std::nullopt);
    event.date_texte = day;
    event.heure_texte = u"18:30"_s;
    QCOMPARE(event.sortDate(), std::nullopt);
}

void TestEvent::theColumnsAreThoseTheServiceIsAskedFor()
{
    QCOMPARE(QLatin1StringView(eventColumns),
             "id,titre,description,tags,lieu,link,organise_par,status,contact_email,user_id,ts,"
             "date_texte,heure_texte,starts_at"_L1);
}

QTEST_GUILESS_MAIN(TestEvent)
#include "test_event.moc"
