#include "model/DecodeEvents.h"
#include "support/Vectors.h"

#include <QTest>

#include <algorithm>
#include <optional>
#include <type_traits>
#include <variant>

#ifdef Q_OS_UNIX
#include <sys/mman.h>
#include <unistd.h>
#endif

using namespace Qt::StringLiterals;

namespace {

template <typename Text>
void put(QJsonObject &row, const QString &key, const std::optional<Text> &value)
{
    if (!value)
        return;
    if constexpr (std::is_same_v<Text, QStringList>)
        row[key] = QJsonArray::fromStringList(*value);
    else if constexpr (std::is_same_v<Text, Instant>)
        row[key] = value->ms;
    else
        row[key] = *value;
}

QJsonObject json(const Event &event)
{
    QJsonObject row{{u"id"_s, event.id}, {u"titre"_s, event.titre}};
    put(row, u"description"_s, event.description);
    put(row, u"tags"_s, event.tags);
    put(row, u"lieu"_s, event.lieu);
    put(row, u"link"_s, event.link);
    put(row, u"organise_par"_s, event.organise_par);
    put(row, u"status"_s, event.status);
    put(row, u"contact_email"_s, event.contact_email);
    put(row, u"user_id"_s, event.user_id);
    put(row, u"ts"_s, event.ts);
    put(row, u"date_texte"_s, event.date_texte);
    put(row, u"heure_texte"_s, event.heure_texte);
    put(row, u"starts_at"_s, event.starts_at);
    return row;
}

QList<Event> eventsOf(const QByteArray &body)
{
    const auto decoded = decodeEvents(body);
    if (const auto *const error = std::get_if<DecodingError>(&decoded))
        qWarning().noquote() << error->description;
    return std::holds_alternative<QList<Event>>(decoded) ? std::get<QList<Event>>(decoded)
                                                         : QList<Event>();
}

QString faultOf(const QByteArray &body)
{
    const auto decoded = decodeEvents(body);
    const auto *const error = std::get_if<DecodingError>(&decoded);
    return error ? error->description : QString();
}

bool share(const QString &a, const QString &b)
{
    return a.constData() == b.constData();
}

} // namespace

class TestDecodeEvents : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void repliesAreReadAsTheOtherClientsReadThem();
    void aRowNeedsOnlyItsIdAndTitle();
    void aQuarterOfASecondIsKept();
    void theFaultSaysWhereAndWhy_data();
    void theFaultSaysWhereAndWhy();
    void aNumberThatNobodyReadsMayBeOfAnySize_data();
    void aNumberThatNobodyReadsMayBeOfAnySize();
    void aBadNumberBesideAHugeOneFails();
    void aGoodNumberBesideAHugeOneIsNoFault();
    void nothingBehindTheBodyIsRead();
    void nestingHasALimit();
    void marksInsideTextsAreKept();
    void repeatedTextsShareStorage();
    void textsThatHardlyRepeatAreReadAsWell();
    void manyRowsKeepTheirOrder();
};

void TestDecodeEvents::repliesAreReadAsTheOtherClientsReadThem()
{
    using namespace Vectors;
    QVERIFY(check(u"events.json"_s,
                  {{u"body"_s},
                   {u"rows"_s, List | Absent},
                   {u"fails"_s, Flag | Absent},
                   {u"at"_s, Text | Absent},
                   {u"says"_s, Text | Absent}},
                  [](const QJsonObject &asked) -> Answer {
                      const auto decoded = decodeEvents(
                          QByteArray::fromBase64(asked[u"body"].toString().toLatin1()));
                      if (const auto *const events = std::get_if<QList<Event>>(&decoded)) {
                          QJsonArray rows;
                          for (const Event &event : *events)
                              rows.append(json(event));
                          return {asked[u"rows"], rows};
                      }
                      // What the description must begin with and hold, when it does so.
                      const QString given = std::get<DecodingError>(decoded).description;
                      const QString at = asked.contains(u"at")
                          ? u"events"_s + asked[u"at"].toString() + u": "_s
                          : u"events: not valid JSON: "_s;
                      const QString says = asked[u"says"].toString();
                      const bool isRight =
                          asked[u"fails"].toBool() && given.startsWith(at) && given.contains(says);
                      const QString wanted = at + u"..."_s + says;
                      return {wanted, isRight ? wanted : given};
                  }));
}

void TestDecodeEvents::aRowNeedsOnlyItsIdAndTitle()
{
    const QList<Event> events = eventsOf(R"([{"id": "1", "titre": "t"}])");
    QCOMPARE(events.size(), 1);
    Event wanted;
    wanted.id = u"1"_s;
    wanted.titre = u"t"_s;
    QCOMPARE(events[0], wanted);
    QCOMPARE(events[0].sortDate(), std::nullopt);
}

void TestDecodeEvents::aQuarterOfASecondIsKept()
{
    const QList<Event> events = eventsOf(R"([
        {"id": "1", "titre": "t", "starts_at": "2025-06-14T18:30:00.250+02:00"},
        {"id": "2", "titre": "t", "starts_at": "2025-06-14T16:30:00Z"},
        {"id": "3", "titre": "t", "starts_at": "2025-06-14"}])");
    QCOMPARE(events.size(), 3);
    QCOMPARE(events[0].starts_at->ms, events[1].starts_at->ms + 250);
    QCOMPARE(events[2].starts_at->ms, 1'749'859'200'000);
}

void TestDecodeEvents::theFaultSaysWhereAndWhy_data()
{
    QTest::addColumn<QByteArray>("body");
    QTest::addColumn<QString>("fault");
    const auto row = [](const char *name, const QByteArray &body, const QString &fault) {
        QTest::newRow(name) << body << fault;
    };
    row("an object", "{}", u"events: expected an array but found an object"_s);
    row("a word", R"("x")", u"events: expected an array but found a string"_s);
    row("a row that is a list", R"([{"id":"1","titre":"t"},[]])",
        u"events[1]: expected an object but found an array"_s);
    row("no title", R"([{"id":"1"}])",
        u"events[0].titre: expected a string but the key is missing"_s);
    row("no title for certain", R"([{"id":"1","titre":null}])",
        u"events[0].titre: expected a string but found null"_s);
    row("a number for an id", R"([{"id":1,"titre":"t"}])",
        u"events[0].id: expected a string but found a number"_s);
    row("a truth for a place", R"([{"id":"1","titre":"t","lieu":true}])",
        u"events[0].lieu: expected a string but found a boolean"_s);
    row("a text for tags", R"([{"id":"1","titre":"t","tags":"a"}])",
        u"events[0].tags: expected an array but found a string"_s);
    row("a list in tags", R"([{"id":"1","titre":"t","tags":["a",[]]}])",
        u"events[0].tags[1]: expected a string but found an array"_s);
    row("a number for a date", R"([{"id":"1","titre":"t","starts_at":20250614}])",
        u"events[0].starts_at: expected a string but found a number"_s);
    row("a date of another form", R"([{"id":"1","titre":"t","starts_at":"14/06/2025"}])",
        u"events[0].starts_at: Invalid date: 14/06/2025"_s);
    row("a date with a zero", R"([{"id":"1","titre":"t","ts":"2025-06-14\u0000"}])",
        u"events[0].ts: Invalid date: 2025-06-14"_s + QChar(u'\0'));
    row("the first of two faults is that of the first field",
        R"([{"starts_at":"x","titre":2,"id":"1"}])",
        u"events[0].titre: expected a string but found a number"_s);
    row("the first of two faults is that of the first row",
        R"([{"id":"1","titre":"t","starts_at":"x"},{"id":2}])",
        u"events[0].starts_at: Invalid date: x"_s);
    row("the key's other case", R"([{"Id":"1","titre":"t"}])",
        u"events[0].id: expected a string but the key is missing"_s);
}

void TestDecodeEvents::theFaultSaysWhereAndWhy()
{
    QFETCH(QByteArray, body);
    QTEST(faultOf(body), "fault");
}

void TestDecodeEvents::aNumberThatNobodyReadsMayBeOfAnySize_data()
{
    QTest::addColumn<QByteArray>("number");
    for (const QByteArray number :
         {"18446744073709551616", "-9223372036854775809", "1e999", "-1E+999", "1e-999", "0.1e400",
          "123456789012345678901234567890.5", "-0", "0", "1.5e3"}) {
        QTest::newRow(number.constData()) << number;
    }
    QTest::newRow("long, and a digit to multiply it by") << QByteArray(400, '9') + "e1";
}

void TestDecodeEvents::aNumberThatNobodyReadsMayBeOfAnySize()
{
    QFETCH(QByteArray, number);
    const QList<Event> events = eventsOf(R"([{"x":)" + number + R"(,"id":"1e999","y":[)" + number
                                         + R"(],"titre":"\"1e999\\","z":{"a":)" + number + "}},"
                                         + R"({"id":"2","titre":"t"}])");
    QCOMPARE(events.size(), 2);
    // What only looks like a number, inside a text, is left alone.
    QCOMPARE(events[0].id, u"1e999"_s);
    QCOMPARE(events[0].titre, u"\"1e999\\"_s);
    QVERIFY(faultOf(R"([{"id":)" + number + R"(,"titre":"t"}])").contains(u"found a number"));
}

void TestDecodeEvents::aBadNumberBesideAHugeOneFails()
{
    for (const QByteArray bad : {"01", "1.", ".5", "1e", "1e+", "+1", "-", "--1", "1-1", "0x10",
                                 "1_0", "1e9x", "00", "-01", "1.2.3", "1e5.5"}) {
        const QByteArray body = R"([{"id":"1","titre":"t","x":1e999,"y":)" + bad + "}]";
        QVERIFY2(faultOf(body).startsWith(u"events: not valid JSON"), body.constData());
    }
}

void TestDecodeEvents::aGoodNumberBesideAHugeOneIsNoFault()
{
    for (const QByteArray good : {"0", "-0", "9", "10", "-19", "0.0", "9.09", "1e0", "1E9", "1e+9",
                                  "9e-1", "0e0", "-1.5E-09"}) {
        const QByteArray body = R"([{"id":"1","titre":"t","x":1e999,"y":)" + good + "}]";
        QCOMPARE(faultOf(body), QString());
        QCOMPARE(eventsOf(body).size(), 1);
    }
}

void TestDecodeEvents::nothingBehindTheBodyIsRead()
{
#ifndef Q_OS_UNIX
    QSKIP("pages are closed otherwise here");
#else
    // The body ends with a page, and the next one is closed.
    const auto page = static_cast<size_t>(sysconf(_SC_PAGESIZE));
    void *const pages =
        mmap(nullptr, 2 * page, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    QVERIFY(pages != MAP_FAILED);
    char *const closed = static_cast<char *>(pages) + page;
    QCOMPARE(mprotect(closed, page, PROT_NONE), 0);
    const QByteArray body = QByteArray(100, ' ') + R"([{"id":"1","titre":"t"}])";
    std::ranges::copy(body, closed - body.size());
    QCOMPARE(eventsOf(QByteArray::fromRawData(closed - body.size(), body.size())).size(), 1);
    munmap(pages, 2 * page);
#endif
}

void TestDecodeEvents::nestingHasALimit()
{
    const auto nested = [](qsizetype depth, const QByteArray &inside = {}) {
        // The list and the row are two levels themselves.
        return R"([{"id":"1","titre":"t","x":)" + QByteArray(depth - 2, '[') + inside
            + QByteArray(depth - 2, ']') + "}]";
    };
    // The innermost may be empty or not; a bracket in a text is none.
    for (const QByteArray inside : {"", "1", "\"[\\\"[\""}) {
        QCOMPARE(eventsOf(nested(512, inside)).size(), 1);
        QVERIFY(faultOf(nested(513, inside)).startsWith(u"events: not valid JSON"));
    }
    QVERIFY(faultOf(nested(1'000'000)).startsWith(u"events: not valid JSON"));
    QVERIFY(faultOf(QByteArray(1'000'000, '[')).startsWith(u"events: not valid JSON"));
    QByteArray objects;
    for (int depth = 0; depth < 1'000'000; ++depth)
        objects += "{\"a\":";
    QVERIFY(faultOf(objects).startsWith(u"events: not valid JSON"));
}

void TestDecodeEvents::marksInsideTextsAreKept()
{
    const QList<Event> events =
        eventsOf("\xEF\xBB\xBF[{\"id\":\"\xEF\xBB\xBF\",\"titre\":\"\xEF\xBB\xBF\\ufeffa\"}]");
    QCOMPARE(events.size(), 1);
    QCOMPARE(events[0].id, u"\ufeff"_s);
    QCOMPARE(events[0].titre, u"\ufeff\ufeffa"_s);
    QVERIFY(faultOf("\xEF\xBB\xBF\xEF\xBB\xBF[]").startsWith(u"events: not valid JSON"));
    QVERIFY(faultOf("\xEF\xBB\xBF").startsWith(u"events: not valid JSON"));
}

void TestDecodeEvents::repeatedTextsShareStorage()
{
    const QByteArray row =
        R"({"id":"1","titre":"Marché","tags":["Repas","Sport"],"lieu":"Salle Vaudrelle",
        "organise_par":"Association","status":"publié","user_id":"u","link":"https://x.fr"})";
    const QList<Event> events = eventsOf(
        "[" + row + "," + row + R"(,{"id":"3","titre":"t","tags":["Sport"]},)"
        + R"({"id":"4","titre":"t","tags":[]},{"id":"5","titre":"t","tags":["S","port"]}])");
    QCOMPARE(events.size(), 5);
    QCOMPARE(events[0].lieu, u"Salle Vaudrelle"_s);
    QVERIFY(share(events[0].titre, events[1].titre));
    QVERIFY(share(*events[0].lieu, *events[1].lieu));
    QVERIFY(share(*events[0].organise_par, *events[1].organise_par));
    QVERIFY(share(*events[0].status, *events[1].status));
    QVERIFY(share(*events[0].user_id, *events[1].user_id));
    QVERIFY(events[0].tags->constData() == events[1].tags->constData());
    QVERIFY(share(events[0].tags->at(1), events[2].tags->at(0)));
    QVERIFY(events[3].tags->isEmpty());
    QCOMPARE(*events[4].tags, (QStringList{u"S"_s, u"port"_s}));
}

void TestDecodeEvents::textsThatHardlyRepeatAreReadAsWell()
{
    QByteArray body = "[";
    for (int i = 0; i < 3'000; ++i) {
        const QByteArray number = QByteArray::number(i);
        body += R"({"id":")" + number + R"(","titre":"t)" + number + R"(","tags":["a)" + number
            + R"("],"lieu":")" + QByteArray::number(i % 200) + R"("},)";
    }
    body.back() = ']';
    const QList<Event> events = eventsOf(body);
    QCOMPARE(events.size(), 3'000);
    for (int i = 0; i < 3'000; ++i) {
        QCOMPARE(events[i].titre, u't' + QString::number(i));
        QCOMPARE(events[i].tags, QStringList{u'a' + QString::number(i)});
        QCOMPARE(events[i].lieu, QString::number(i % 200));
        QVERIFY(share(*events[i].lieu, *events[i % 200].lieu));
    }
}

void TestDecodeEvents::manyRowsKeepTheirOrder()
{
    QByteArray body = " [ ";
    for (int i = 0; i < 50'000; ++i) {
        body += (i > 0 ? ",\n" : "") + QByteArray(R"({"titre": "é\n", "id": ")")
            + QByteArray::number(i) + R"("})";
    }
    const QList<Event> events = eventsOf(body + "\n] ");
    QCOMPARE(events.size(), 50'000);
    for (int i = 0; i < 50'000; ++i)
        QVERIFY(events[i].id == QString::number(i) && events[i].titre == u"é\n");
    QVERIFY(faultOf(body).startsWith(u"events: not valid JSON"));
}

QTEST_GUILESS_MAIN(TestDecodeEvents)
#include "test_decode_events.moc"
