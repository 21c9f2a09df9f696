#include "account/Credentials.h"
#include "model/EventCreatePayload.h"
#include "platform/JsonText.h"
#include "support/Vectors.h"

#include <QDateTime>
#include <QJsonDocument>
#include <QTest>

#include <variant>

using namespace Qt::StringLiterals;

namespace {

Instant instantAt(const QJsonValue &ms)
{
    return {ms.toInteger()};
}

Instant gmt(const QString &text)
{
    return {QDateTime::fromString(text, Qt::ISODate).toMSecsSinceEpoch()};
}

} // namespace

class TestEventPayload : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void theStartIsTheChosenDayAndTime();
    void theStartIsAlwaysWrittenInGmtWithoutFraction_data();
    void theStartIsAlwaysWrittenInGmtWithoutFraction();
    void everyTextReadsBackIdentically();
    void controlCharactersReadBackIdentically();
    void halfACharacterIsWrittenAsOneThatStandsForNone_data();
    void halfACharacterIsWrittenAsOneThatStandsForNone();
    void onlyWhatIsPresentIsWritten();
    void whatIsEmptyIsWritten();
    void membersAreWrittenInTheirOrder();
};

void TestEventPayload::theStartIsTheChosenDayAndTime()
{
    QVERIFY(Vectors::check(
        u"joins.json"_s,
        {{u"from"_s, Vectors::Number}, {u"time"_s, Vectors::Number}, {u"zone"_s}, {u"starts_at"_s}},
        [](const auto &asked) {
            const Calendar calendar(u"fr_FR"_s, asked[u"zone"].toString());
            return Vectors::Answer{asked[u"starts_at"],
                                   EventCreatePayload::isoDateTime(instantAt(asked[u"from"]),
                                                                   instantAt(asked[u"time"]),
                                                                   calendar)};
        }));
}

void TestEventPayload::theStartIsAlwaysWrittenInGmtWithoutFraction_data()
{
    QTest::addColumn<QString>("from");
    QTest::addColumn<qint64>("time");
    QTest::addColumn<QString>("written");
    // Paris, summer time: 18:30 there.
    const qint64 evening = gmt(u"2025-06-01T16:30:59Z"_s).ms + 999;
    QTest::newRow("summer") << u"2025-06-14T21:30:00Z"_s << evening << u"2025-06-14T16:30:00Z"_s;
    QTest::newRow("winter") << u"2025-12-14T12:00:00Z"_s << evening << u"2025-12-14T17:30:00Z"_s;
    QTest::newRow("the day alone counts")
        << u"2025-06-13T22:30:00Z"_s << evening << u"2025-06-14T16:30:00Z"_s;
    QTest::newRow("the last year of four digits")
        << u"9999-12-31T12:00:00Z"_s << evening << u"9999-12-31T17:30:00Z"_s;
    // Before zones, noon in Paris was nine minutes and 21 seconds before noon in Greenwich.
    QTest::newRow("a year of three digits")
        << u"0800-01-01T12:00:00Z"_s << evening << u"0800-01-01T18:20:39Z"_s;
}

void TestEventPayload::theStartIsAlwaysWrittenInGmtWithoutFraction()
{
    QFETCH(QString, from);
    QFETCH(qint64, time);
    QFETCH(QString, written);
    QCOMPARE(EventCreatePayload::isoDateTime(gmt(from), Instant{time}), written);
}

void TestEventPayload::everyTextReadsBackIdentically()
{
    QVERIFY(Vectors::check(u"escapes.json"_s, {{u"text"_s}, {u"json"_s}}, [](const auto &asked) {
        const QByteArray json =
            "{\"email\":" + jsonText(asked[u"text"].toString()) + ",\"password\":\"\"}";
        const auto read = decodeCredentials(json);
        return Vectors::Answer{asked[u"text"],
                               std::holds_alternative<Credentials>(read)
                                   ? QJsonValue(std::get<Credentials>(read).email)
                                   : QJsonValue()};
    }));
}

void TestEventPayload::controlCharactersReadBackIdentically()
{
    QString text;
    for (char16_t c = 0; c < 0x100; ++c)
        text += c;
    const QJsonDocument read = QJsonDocument::fromJson('[' + jsonText(text) + ']');
    QCOMPARE(read[0].toString(), text);
    const QByteArray written = "\"\\\"\\\\\\n\\u0001/\"";
    QCOMPARE(jsonText(u"\"\\\n\u0001/"), written);
}

void TestEventPayload::halfACharacterIsWrittenAsOneThatStandsForNone_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("read");
    const QString first(QChar(0xD83D));
    const QString second(QChar(0xDE00));
    QTest::newRow("whole") << first + second << first + second;
    QTest::newRow("first") << u'a' + first + u'b' << u"a\uFFFDb"_s;
    QTest::newRow("second") << u'a' + second + u'b' << u"a\uFFFDb"_s;
    QTest::newRow("first at the end") << u'a' + first << u"a\uFFFD"_s;
    QTest::newRow("second at the front") << second + u'b' << u"\uFFFDb"_s;
    QTest::newRow("the wrong way round") << second + first << u"\uFFFD\uFFFD"_s;
    QTest::newRow("first twice") << first + first + second << u'\uFFFD' + first + second;
}

void TestEventPayload::halfACharacterIsWrittenAsOneThatStandsForNone()
{
    QFETCH(QString, text);
    QFETCH(QString, read);
    QCOMPARE(QJsonDocument::fromJson('[' + jsonText(text) + ']')[0].toString(), read);
}

void TestEventPayload::onlyWhatIsPresentIsWritten()
{
    EventCreatePayload payload;
    payload.id = u"1"_s;
    payload.titre = u"t"_s;
    const QByteArray written = R"({"id":"1","titre":"t"})";
    QCOMPARE(payload.toJson(), written);
}

void TestEventPayload::whatIsEmptyIsWritten()
{
    EventCreatePayload payload;
    payload.tags = QStringList();
    payload.lieu = QString();
    const QByteArray written = R"({"id":"","titre":"","tags":[],"lieu":""})";
    QCOMPARE(payload.toJson(), written);

    const QString none;
    const EventCreatePayload empty{none, none, none, none, QStringList{none, u"a"_s, none},
                                   none, none, none, none, none,
                                   none, none};
    const QByteArray all =
        R"({"id":"","user_id":"","titre":"","description":"","tags":["","a",""],"lieu":"",)"
        R"("link":"","organise_par":"","contact_email":"","date_texte":"","heure_texte":"",)"
        R"("starts_at":""})";
    QCOMPARE(empty.toJson(), all);
}

void TestEventPayload::membersAreWrittenInTheirOrder()
{
    const EventCreatePayload payload{u"1"_s,
                                     u"u"_s,
                                     u"Fête"_s,
                                     u"d"_s,
                                     QStringList{u"a"_s, u"\"b\""_s},
                                     u"l"_s,
                                     u"https://x.fr"_s,
                                     u"o"_s,
                                     u"a@b.fr"_s,
                                     u"2025-06-14"_s,
                                     u"18:30"_s,
                                     u"2025-06-14T16:30:00Z"_s};
    const QByteArray written =
        R"({"id":"1","user_id":"u","titre":"Fête","description":"d",)"
        R"("tags":["a","\"b\""],"lieu":"l","link":"https://x.fr","organise_par":"o",)"
        R"("contact_email":"a@b.fr","date_texte":"2025-06-14","heure_texte":"18:30",)"
        R"("starts_at":"2025-06-14T16:30:00Z"})";
    QCOMPARE(payload.toJson(), written);
}

QTEST_GUILESS_MAIN(TestEventPayload)
#include "test_event_payload.moc"
