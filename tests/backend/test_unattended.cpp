// Tasks that nobody waits for.

#include "backend/LocalizedError.h"
#include "backend/Unattended.h"

#include <QCoro/QCoroTask>
#include <QCoro/QCoroTimer>
#include <QTest>
#include <QTimer>

#include <chrono>
#include <stdexcept>

using namespace Qt::StringLiterals;

namespace {

struct Worded final : LocalizedError {
    QString localizedDescription() const override { return u"worded"_s; }
};

template <typename Error>
QCoro::Task<void> failLater(const Error error)
{
    QTimer timer;
    timer.start(std::chrono::milliseconds(1));
    co_await timer;
    throw error;
}

QCoro::Task<void> countLater(int &count)
{
    QTimer timer;
    timer.start(std::chrono::milliseconds(1));
    co_await timer;
    ++count;
}

} // namespace

class TestUnattended : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void aTaskRunsOnThoughNobodyHoldsIt()
    {
        int count = 0;
        runUnattended(countLater(count));
        QCOMPARE(count, 0);
        QTRY_COMPARE(count, 1);
    }

    void whatEscapesATaskIsToldInTheLog()
    {
        m_log.clear();
        const auto before = qInstallMessageHandler(
            [](QtMsgType, const QMessageLogContext &, const QString &text) { m_log.append(text); });
        runUnattended(failLater(Worded()));
        runUnattended(failLater(std::runtime_error("no memory")));
        runUnattended(failLater(7));
        const bool areThere = QTest::qWaitFor([] { return m_log.size() == 3; });
        qInstallMessageHandler(before);
        QVERIFY(areThere);
        for (const QString &failure : {u"worded"_s, u"An unexpected error occurred (no memory)."_s,
                                       u"An unexpected error occurred."_s})
            QVERIFY2(m_log.contains(u"A task has failed: "_s + failure), qPrintable(failure));
    }

private:
    inline static QStringList m_log;
};

QTEST_GUILESS_MAIN(TestUnattended)
#include "test_unattended.moc"
