// How large a window opens. In large type it does so in test_large_window.cpp.

#include "browse/ContentView.h"
#include "controls/Sheet.h"
#include "look/Fonts.h"
#include "support/MembersWindow.h"
#include "support/ViewMain.h"

#include <QFontMetrics>
#include <QScrollArea>
#include <QScrollBar>

using namespace Qt::StringLiterals;
using namespace WindowTest;
using namespace MembersWindow;

class TestWindowSize : public QObject {
    Q_OBJECT

public:
    explicit TestWindowSize(HttpServer &server)
        : m_server(server)
    {
    }

private Q_SLOTS:
    void init();
    void cleanup();
    void itOpensAsLargeAsItIsDrawn();
    void theFormOfANewEventIsSeenWhole();

private:
    HttpServer &m_server;
    Service m_service;
};

void TestWindowSize::init()
{
    m_server.answerWith([this](const HttpRequest &request) { return m_service.answer(request); });
}

void TestWindowSize::cleanup()
{
    SupabaseClient::signOut();
    SupabaseClient::clearSavedCredentials();
}

void TestWindowSize::itOpensAsLargeAsItIsDrawn()
{
    const ContentView window;
    QCOMPARE(window.width(), 760);
    if (QFontMetrics(appFont(13)).height() <= 16)
        QCOMPARE(window.height(), 620);
    else
        QVERIFY(window.height() > 620);
}

void TestWindowSize::theFormOfANewEventIsSeenWhole()
{
    ContentView window;
    window.show();
    window.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&window));
    signInAs(u"camille@exemple.fr"_s);
    QTRY_VERIFY(button(&window, u"Ajouter un événement"_s));
    click(&window, u"Ajouter un événement"_s);
    QTRY_VERIFY(sheet(&window));
    const auto *fields = sheet(&window)->findChild<QScrollArea *>();
    QTRY_VERIFY(fields->isVisible());
    QTRY_COMPARE(fields->verticalScrollBar()->maximum(), 0);
    QVERIFY(sheet(&window)->card().bottom() + 1 <= window.height() - 16);
}

int main(int argc, char *argv[])
{
    return runWithService<TestWindowSize>(argc, argv);
}

#include "test_window_size.moc"
