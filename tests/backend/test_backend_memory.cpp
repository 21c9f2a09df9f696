// Where memory runs out: the operation fails, the program goes on. The program is this one, started
// again with an address space that ends soon.

#include "support/Await.h"
#include "support/HttpServer.h"
#include "support/LocalBackend.h"

#include <QCoreApplication>
#include <QProcess>
#include <QTest>

#include <zlib.h>

#include <csignal>
#include <cstdio>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype megabyte = qsizetype{1024} * 1024;

QByteArray zipped(const QByteArray &content)
{
    QByteArray packed(content.size() / 500 + 1000, Qt::Uninitialized);
    z_stream stream{};
    deflateInit2(&stream, 9, Z_DEFLATED, 15 + 16, 8, Z_DEFAULT_STRATEGY);
    QByteArray input = content;
    stream.next_in = reinterpret_cast<Bytef *>(input.data());
    stream.avail_in = static_cast<uInt>(input.size());
    stream.next_out = reinterpret_cast<Bytef *>(packed.data());
    stream.avail_out = static_cast<uInt>(packed.size());
    if (deflate(&stream, Z_FINISH) != Z_STREAM_END)
        qFatal("the packed body has no room");
    packed.truncate(static_cast<qsizetype>(stream.total_out));
    deflateEnd(&stream);
    return packed;
}

// Leaves this program so many bytes more than it has.
void bound(qsizetype bytes)
{
    QFile memory(u"/proc/self/statm"_s);
    if (!memory.open(QIODevice::ReadOnly))
        qFatal("this program's size is not to be had");
    const auto size = memory.readAll().split(' ').constFirst().toULongLong()
        * static_cast<rlim_t>(sysconf(_SC_PAGESIZE));
    const rlim_t most = size + static_cast<rlim_t>(bytes);
    const rlimit limit{most, most};
    if (setrlimit(RLIMIT_AS, &limit) != 0)
        qFatal("this program's size cannot be bounded");
}

// Two fetches in a row, and what was said of them.
int fetchTwice(const QStringList &arguments)
{
    LocalBackend backend({arguments.at(1), u"k"_s});
    // What everything needs that happens later.
    outcomeOf(backend.fetchEvents());
    bound(arguments.at(2).toLongLong());
    for (int i = 0; i < 2; ++i) {
        const QByteArray said = outcomeOf(backend.fetchEvents()).failure().toUtf8();
        std::printf("<%s>\n", said.constData());
    }
    std::fflush(stdout);
    return 0;
}

} // namespace

class TestBackendMemory : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void whereMemoryRunsOutTheProgramGoesOn_data()
    {
        QTest::addColumn<HttpAnswer>("answer");
        QTest::addColumn<qsizetype>("room");
        QTest::addColumn<QByteArray>("said");
        const QByteArray none = "There is not enough memory for the reply.";
        QTest::newRow("a bomb") << HttpAnswer::whole(200, zipped(QByteArray(250 * megabyte, ' ')),
                                                     {{"Content-Encoding", "gzip"}})
                                << 150 * megabyte << none;
        QTest::newRow("a long body")
            << HttpAnswer::whole(200, QByteArray(100 * megabyte, ' ')) << 90 * megabyte << none;
        QByteArray many = "[";
        for (int i = 0; i < 1'000'000; ++i)
            many += "{\"id\":\"\",\"titre\":\"\"},";
        many.back() = ']';
        QTest::newRow("many events") << HttpAnswer::whole(200, many) << 200 * megabyte << none;
        QTest::newRow("an error as a bomb") << HttpAnswer::whole(
            500, zipped(QByteArray(100 * megabyte, 'x')), {{"Content-Encoding", "gzip"}})
                                            << 300 * megabyte << none;
        // Only said: nothing of it comes.
        QTest::newRow("a length") << HttpAnswer::cut(200, "[", 250 * megabyte) << 150 * megabyte
                                  << "The connection was lost before the reply was complete."_ba;
    }

    void whereMemoryRunsOutTheProgramGoesOn()
    {
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
        QSKIP("a sanitizer takes terabytes of address space for itself");
#endif
        QFETCH(HttpAnswer, answer);
        QFETCH(qsizetype, room);
        QFETCH(QByteArray, said);
        HttpServer server;
        const HttpAnswer list = HttpAnswer::whole(200, "[]");
        server.answerInTurn({list, answer, list});
        QProcess program;
        program.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        program.setChildProcessModifier([] { prctl(PR_SET_PDEATHSIG, SIGKILL); });
        program.start(QCoreApplication::applicationFilePath(),
                      {server.base(), QString::number(room)});
        QTRY_COMPARE_WITH_TIMEOUT(program.state(), QProcess::NotRunning, 90'000);
        QCOMPARE(program.exitStatus(), QProcess::NormalExit);
        QCOMPARE(program.readAllStandardOutput(), '<' + said + ">\n<>\n");
    }
};

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    if (argc == 3 && QByteArray(argv[1]).startsWith("http"))
        return fetchTwice(QCoreApplication::arguments());
    TestBackendMemory test;
    return QTest::qExec(&test, argc, argv);
}

#include "test_backend_memory.moc"
