// Replies that come compressed.

#include "backend/Inflate.h"
#include "support/Await.h"
#include "support/HttpServer.h"
#include "support/LocalBackend.h"

#include <QTest>

#include <zlib.h>

#include <variant>

using namespace Qt::StringLiterals;

namespace {

enum Format { Zlib = 15, Gzip = 15 + 16 };

QByteArray packed(const QByteArray &bytes, Format format = Gzip, int repeats = 1)
{
    z_stream stream{};
    deflateInit2(&stream, Z_DEFAULT_COMPRESSION, Z_DEFLATED, format, 8, Z_DEFAULT_STRATEGY);
    QByteArray result;
    QByteArray buffer(64 * 1024, Qt::Uninitialized);
    QByteArray input = bytes;
    for (int i = 0; i < repeats; ++i) {
        stream.next_in = reinterpret_cast<Bytef *>(input.data());
        stream.avail_in = static_cast<uInt>(input.size());
        do {
            stream.next_out = reinterpret_cast<Bytef *>(buffer.data());
            stream.avail_out = static_cast<uInt>(buffer.size());
            deflate(&stream, i + 1 == repeats ? Z_FINISH : Z_NO_FLUSH);
            result.append(buffer.constData(), buffer.size() - qsizetype(stream.avail_out));
        } while (stream.avail_out == 0);
    }
    deflateEnd(&stream);
    return result;
}

constexpr qint64 mebibyte = 1024 * 1024;

} // namespace

class TestBackendGzip : public QObject {
    Q_OBJECT

    QString fetched(const HttpAnswer &answer)
    {
        HttpServer server;
        server.answer(answer);
        Limits limits;
        limits.largestReply = mebibyte;
        LocalBackend backend({server.base(), u"k"_s}, limits);
        return outcomeOf(backend.fetchEvents()).failure();
    }

private Q_SLOTS:
    void whatWasPackedComesBack_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::newRow("nothing") << QByteArray();
        QTest::newRow("a letter") << QByteArray("x");
        QTest::newRow("a list") << QByteArray("[{\"id\":\"1\",\"titre\":\"Fête\"}]");
        QTest::newRow("zeros") << QByteArray(mebibyte, '\0');
        QByteArray noise(300000, Qt::Uninitialized);
        quint32 state = 1;
        for (char &c : noise)
            c = static_cast<char>((state = state * 1664525 + 1013904223) >> 24);
        QTest::newRow("noise") << noise;
    }

    void whatWasPackedComesBack()
    {
        QFETCH(QByteArray, bytes);
        const auto content = inflateGzip(packed(bytes), mebibyte);
        QVERIFY(std::get_if<QByteArray>(&content) != nullptr);
        QVERIFY(std::get<QByteArray>(content) == bytes);
    }

    void membersInARowAreOneContent()
    {
        const auto content = inflateGzip(packed("[") + packed("]"), 100);
        QCOMPARE(std::get<QByteArray>(content), "[]");
    }

    void whatIsNoGzipIsBroken_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        const QByteArray good = packed(QByteArray(5000, 'x') + "y");
        QByteArray wrongSum = good;
        wrongSum[good.size() - 6] = static_cast<char>(wrongSum[good.size() - 6] ^ 1);
        QTest::newRow("nothing") << QByteArray();
        QTest::newRow("plain") << QByteArray("[]");
        QTest::newRow("zlib's own format") << packed("[]", Zlib);
        QTest::newRow("header only") << good.first(10);
        QTest::newRow("last byte missing") << good.chopped(1);
        QTest::newRow("wrong checksum") << wrongSum;
        QTest::newRow("something behind it") << good + "more";
        QTest::newRow("a second member cut") << good + good.chopped(3);
    }

    void whatIsNoGzipIsBroken()
    {
        QFETCH(QByteArray, bytes);
        const auto content = inflateGzip(bytes, mebibyte);
        QVERIFY(std::get_if<InflateFault>(&content) != nullptr);
        QCOMPARE(std::get<InflateFault>(content), InflateFault::broken);
    }

    void theLimitHoldsToTheByte()
    {
        const QByteArray bytes = packed(QByteArray(100000, 'x'));
        QCOMPARE(std::get<QByteArray>(inflateGzip(bytes, 100000)).size(), 100000);
        QCOMPARE(std::get<InflateFault>(inflateGzip(bytes, 99999)), InflateFault::tooLarge);
        QCOMPARE(std::get<InflateFault>(inflateGzip(packed("xy"), 1)), InflateFault::tooLarge);
    }

    void aBombStopsEarly()
    {
        // 64 MiB out of 64 KiB, behind whose middle the input is broken: whoever reads
        // on to there finds the break instead of the size.
        QByteArray bomb = packed(QByteArray(mebibyte, '\0'), Gzip, 64);
        QVERIFY(bomb.size() < mebibyte / 8);
        bomb.truncate(bomb.size() / 2);
        QCOMPARE(std::get<InflateFault>(inflateGzip(bomb, mebibyte)), InflateFault::tooLarge);
    }

    void aPackedReplyIsRead_data()
    {
        QTest::addColumn<HttpAnswer>("answer");
        const QByteArray list = packed("[{\"id\":\"1\",\"titre\":\"x\"}]");
        QTest::newRow("gzip") << HttpAnswer::whole(200, list, {{"Content-Encoding", "gzip"}});
        QTest::newRow("in capitals")
            << HttpAnswer::whole(200, list, {{"content-encoding", "GZIP"}});
        QTest::newRow("by its old name")
            << HttpAnswer::whole(200, list, {{"Content-Encoding", "x-gzip"}});
        QTest::newRow("in pieces")
            << HttpAnswer::whole(200, list, {{"Content-Encoding", "gzip"}}).inPieces(5, 1);
        QTest::newRow("chunked") << HttpAnswer::chunked(200, {list.first(7), list.sliced(7)},
                                                        {{"Content-Encoding", "gzip"}});
    }

    void aPackedReplyIsRead()
    {
        QFETCH(HttpAnswer, answer);
        QCOMPARE(fetched(answer), QString());
    }

    void aPackedErrorIsRead()
    {
        QCOMPARE(
            fetched(HttpAnswer::whole(403, packed("interdit"), {{"Content-Encoding", "gzip"}})),
            u"HTTP 403: interdit"_s);
    }

    void anEmptyBodyNeedsNoUnpacking()
    {
        QCOMPARE(fetched(HttpAnswer::whole(404, {}, {{"Content-Encoding", "gzip"}})),
                 u"HTTP 404"_s);
    }

    void whatCannotBeUnpackedIsAFailureOfTheTransport_data()
    {
        QTest::addColumn<HttpAnswer>("answer");
        QTest::addColumn<QString>("text");
        const HttpHeaders gzip{{"Content-Encoding", "gzip"}};
        const QString broken = u"The reply is broken: its compressed body cannot be read."_s;
        const QString large = u"The reply was given up: it is larger than 1 MiB."_s;
        QTest::newRow("not packed") << HttpAnswer::whole(200, "[]", gzip) << broken;
        QTest::newRow("cut short")
            << HttpAnswer::whole(200, packed("[]").chopped(2), gzip) << broken;
        QTest::newRow("an error cut short")
            << HttpAnswer::whole(500, packed("non").chopped(2), gzip) << broken;
        QTest::newRow("a bomb") << HttpAnswer::whole(
            200, packed(QByteArray(mebibyte, ' '), Gzip, 64), gzip)
                                << large;
        QTest::newRow("asked for by nobody")
            << HttpAnswer::whole(200, "x", {{"Content-Encoding", "br"}})
            << u"The reply is packed in a way that was not asked for."_s;
    }

    void whatCannotBeUnpackedIsAFailureOfTheTransport()
    {
        QFETCH(HttpAnswer, answer);
        QFETCH(QString, text);
        QCOMPARE(fetched(answer), text);
    }
};

QTEST_GUILESS_MAIN(TestBackendGzip)
#include "test_backend_gzip.moc"
