// Where there is memory for a reply, but none for putting its events in order.

#include "browse/EventOrder.h"
#include "support/MembersWindow.h"

#include <QJsonArray>
#include <QThread>

#include <atomic>
#include <new>
#include <utility>

using namespace Qt::StringLiterals;
using namespace WindowTest;
using namespace MembersWindow;

namespace {

std::atomic<bool> hasNoMore = false;
std::atomic<Qt::HANDLE> orderedOn = nullptr;

/// Too long to be put in order on the window's thread.
QJsonArray longList()
{
    QJsonArray rows;
    for (int i = 0; i < 501; ++i)
        rows.append(row(u"fête"_s, 3));
    return rows;
}

} // namespace

// The linker takes the second where the first's namesake is called for, and the first is that
// namesake.
DatedEvents realDatedEvents(QList<Event> fetched) asm("__real__Z11datedEvents5QListI5EventE");
DatedEvents boundDatedEvents(QList<Event> fetched) asm("__wrap__Z11datedEvents5QListI5EventE");

DatedEvents boundDatedEvents(QList<Event> fetched)
{
    orderedOn = QThread::currentThreadId();
    if (hasNoMore)
        throw std::bad_alloc();
    return realDatedEvents(std::move(fetched));
}

class TestWindowMemory : public QObject {
    Q_OBJECT

    HttpServer &m_server;

public:
    explicit TestWindowMemory(HttpServer &server)
        : m_server(server)
    {
    }

private Q_SLOTS:
    void init()
    {
        hasNoMore = false;
        m_server.answer(reply(longList()));
    }

    void aListThatCannotBeOrderedIsToldAndTheNextOneShown()
    {
        hasNoMore = true;
        const auto window = shownWindow();
        const QString told = u"Failed to load events: There is not enough memory for the events."_s;
        QTRY_VERIFY(named(window.get(), told));
        QVERIFY(!named(window.get(), u"fête"_s));

        hasNoMore = false;
        QTest::keyClick(window.get(), Qt::Key_F5);
        QTRY_VERIFY(named(window.get(), u"fête"_s));
        QVERIFY(!named(window.get(), told));
    }

    void aWindowThatIsGoneByThenIsJustGone()
    {
        hasNoMore = true;
        auto window = shownWindow();
        QTRY_VERIFY(named(window.get(),
                          u"Failed to load events: There is not enough memory for the "
                          "events."_s));
        const Sent sent(m_server);
        QTest::keyClick(window.get(), Qt::Key_F5);
        QTRY_COMPARE(sent.count(), 1);
        window.reset();
        hasNoMore = false;
        window = shownWindow();
        QTRY_VERIFY(named(window.get(), u"fête"_s));
    }

    void aVillagesListIsThereWithoutAWayToAnotherThreadAndALongOneHoldsNothingUp()
    {
        auto window = shownWindow();
        QTRY_VERIFY(named(window.get(), u"fête"_s));
        QVERIFY(orderedOn != QThread::currentThreadId());

        QJsonArray rows = longList();
        rows.removeLast();
        m_server.answer(reply(rows));
        window = shownWindow();
        QTRY_VERIFY(named(window.get(), u"fête"_s));
        QVERIFY(orderedOn == QThread::currentThreadId());
    }
};

int main(int argc, char *argv[])
{
    return runWithService<TestWindowMemory>(argc, argv, installSectionListAccessibility);
}

#include "test_window_memory.moc"
