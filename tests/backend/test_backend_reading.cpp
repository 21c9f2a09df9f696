// On which thread a reply is read: what takes longer than a moment must not hold the window up. The
// program's readers of texts are these, which note who asks and then go on to the real ones.

#include "support/LocalBackend.h"
#include "support/Sent.h"

#include <QMutex>
#include <QTest>
#include <QThread>

#include <algorithm>
#include <optional>
#include <string_view>

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype mostReadAtOnce = qsizetype{64} * 1024;

QMutex mutex;
int readHere = 0;
int readElsewhere = 0;
Qt::HANDLE here = nullptr;

void note()
{
    const QMutexLocker lock(&mutex);
    ++(QThread::currentThreadId() == here ? readHere : readElsewhere);
}

/// A JSON object that is as long as that.
QByteArray padded(const QByteArray &members, qsizetype size)
{
    const QByteArray front = '{' + members + ",\"more\":\"";
    return front + QByteArray(size - front.size() - 2, 'x') + "\"}";
}

const QByteArray refused = R"("error":"no","error_description":"Invalid login credentials")";
const QByteArray granted = R"("access_token":"jeton","user":{"id":"moi"})";

enum class Asked { list, change, signIn, signUp };

QString failureOf(Backend &backend, Asked asked)
{
    EventCreatePayload payload;
    payload.id = u"1"_s;
    switch (asked) {
    case Asked::list:
        return outcomeOf(backend.fetchEvents()).failure();
    case Asked::change:
        return outcomeOf(backend.updateEvent(u"1"_s, payload)).failure();
    case Asked::signIn:
        return outcomeOf(backend.signIn(u"a@b.fr"_s, u"secret"_s)).failure();
    case Asked::signUp:
        return outcomeOf(backend.signUp(u"a@b.fr"_s, u"secret"_s)).failure();
    }
    return {};
}

} // namespace

// The linker takes the second of each pair where the first's namesake is called for, and the first
// is that namesake.
QString realTextOf(std::string_view utf8) //
    asm("__real__Z6textOfSt17basic_string_viewIcSt11char_traitsIcEE");
QString notedTextOf(std::string_view utf8) //
    asm("__wrap__Z6textOfSt17basic_string_viewIcSt11char_traitsIcEE");
std::optional<QString> realTextOfUtf8(QByteArrayView bytes) //
    asm("__real__Z10textOfUtf814QByteArrayView");
std::optional<QString> notedTextOfUtf8(QByteArrayView bytes) //
    asm("__wrap__Z10textOfUtf814QByteArrayView");

QString notedTextOf(std::string_view utf8)
{
    note();
    return realTextOf(utf8);
}

std::optional<QString> notedTextOfUtf8(QByteArrayView bytes)
{
    note();
    return realTextOfUtf8(bytes);
}

class TestBackendReading : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { here = QThread::currentThreadId(); }

    void aLongReplyIsReadOnTheWorkersThread_data()
    {
        QTest::addColumn<Asked>("asked");
        QTest::addColumn<int>("status");
        QTest::addColumn<QByteArray>("members");
        QTest::addColumn<QString>("failure");
        const QByteArray nothing = R"("a":"b")";
        const QString http = u"HTTP 500: {\"a\":\"b\",\"more\":\"xxx"_s;
        QTest::newRow("an error instead of the list") << Asked::list << 500 << nothing << http;
        QTest::newRow("an error instead of a change") << Asked::change << 500 << nothing << http;
        QTest::newRow("a refusal of a sign-in") << Asked::signIn << 400 << refused << refusal;
        QTest::newRow("a refusal of a sign-up") << Asked::signUp << 422 << refused << refusal;
        QTest::newRow("a session") << Asked::signIn << 200 << granted << QString();
        QTest::newRow("a new member's session") << Asked::signUp << 201 << granted << QString();
        QTest::newRow("no session")
            << Asked::signIn << 200 << R"("user":{"id":1})"_ba
            << u"AuthResponse.user.id: expected a string but found a number"_s;
    }

    void aLongReplyIsReadOnTheWorkersThread()
    {
        QFETCH(Asked, asked);
        QFETCH(int, status);
        QFETCH(QByteArray, members);
        QFETCH(QString, failure);
        Visitor visitor;
        QCOMPARE(visitor.signedIn(granting()), QString());

        for (const bool isLong : {false, true}) {
            visitor.server.answer(
                HttpAnswer::whole(status, padded(members, mostReadAtOnce + (isLong ? 1 : 0))));
            readHere = 0;
            readElsewhere = 0;
            const QString said = failureOf(visitor.backend, asked);
            QVERIFY2(failure.isEmpty() ? said.isEmpty() : said.startsWith(failure),
                     qPrintable(said.first(std::min<qsizetype>(said.size(), 200))));
            const QMutexLocker lock(&mutex);
            QVERIFY(readHere + readElsewhere > 0);
            QCOMPARE(isLong ? readHere : readElsewhere, 0);
        }
    }

    void aLongListIsReadThereToo()
    {
        Visitor visitor;
        for (const bool isLong : {false, true}) {
            const QByteArray row =
                padded(R"("id":"a","titre":"b")", mostReadAtOnce - 2 + (isLong ? 1 : 0));
            visitor.server.answer(HttpAnswer::whole(200, '[' + row + ']'));
            readHere = 0;
            readElsewhere = 0;
            const auto outcome = outcomeOf(visitor.backend.fetchEvents());
            QCOMPARE(outcome.failure(), QString());
            QCOMPARE(outcome.value->size(), 1);
            const QMutexLocker lock(&mutex);
            QVERIFY(readHere + readElsewhere > 0);
            QCOMPARE(isLong ? readHere : readElsewhere, 0);
        }
    }
};

QTEST_GUILESS_MAIN(TestBackendReading)
#include "test_backend_reading.moc"
