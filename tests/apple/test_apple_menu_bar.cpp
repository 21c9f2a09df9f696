#include "app/OstreloApp.h"
#include "backend/SupabaseClient.h"
#include "browse/ContentView.h"
#include "support/OwnHome.h"

#include <QApplication>
#include <QMenuBar>
#include <QPointer>
#include <QTest>
#include <QTimer>

#include <memory>

using namespace Qt::StringLiterals;

namespace {

QList<ContentView *> windows()
{
    QList<ContentView *> list;
    const auto widgets = QApplication::topLevelWidgets();
    for (QWidget *widget : widgets) {
        if (auto *window = qobject_cast<ContentView *>(widget); window && window->isVisible())
            list.append(window);
    }
    return list;
}

/// The action of that text in the menu bar that no window owns.
QAction *menuAction(const QString &text)
{
    const auto widgets = QApplication::topLevelWidgets();
    for (QWidget *widget : widgets) {
        if (const auto *bar = qobject_cast<QMenuBar *>(widget)) {
            const auto actions = bar->findChildren<QAction *>();
            for (QAction *action : actions) {
                if (action->text() == text)
                    return action;
            }
        }
    }
    return nullptr;
}

} // namespace

/// The program as it is on macOS: a menu bar of its own, which outlives the last window.
class TestAppleMenuBar : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void aFurtherWindowOpensFromTheMenu();
    void theMenuClosesTheWindowInFront();
    void theProgramStaysWithoutWindows();
    void comingBackToItWithoutAWindowOpensOne();
    void comingBackToItWithAWindowOpensNoOther();

private:
    std::unique_ptr<OstreloApp> m_app;
};

void TestAppleMenuBar::init()
{
    m_app = std::make_unique<OstreloApp>();
    QTRY_COMPARE(windows().size(), 1);
}

void TestAppleMenuBar::cleanup()
{
    QApplication::closeAllWindows();
    QTRY_VERIFY(windows().isEmpty());
    m_app.reset();
}

void TestAppleMenuBar::aFurtherWindowOpensFromTheMenu()
{
    QVERIFY(menuAction(u"Nouvelle fenêtre"_s));
    QCOMPARE(menuAction(u"Nouvelle fenêtre"_s)->shortcut(), QKeySequence(QKeySequence::New));
    menuAction(u"Nouvelle fenêtre"_s)->trigger();
    QTRY_COMPARE(windows().size(), 2);
}

void TestAppleMenuBar::theMenuClosesTheWindowInFront()
{
    menuAction(u"Nouvelle fenêtre"_s)->trigger();
    QTRY_COMPARE(windows().size(), 2);
    const QPointer<ContentView> front(windows().first());
    front->activateWindow();
    QTRY_VERIFY(front->isActiveWindow());
    menuAction(u"Fermer"_s)->trigger();
    QTRY_VERIFY(!front);
    QCOMPARE(windows().size(), 1);
}

void TestAppleMenuBar::theProgramStaysWithoutWindows()
{
    bool isAbove = false;
    QTimer::singleShot(0, this, [] { windows().first()->close(); });
    QTimer::singleShot(200, this, [&isAbove] {
        isAbove = windows().isEmpty();
        QCoreApplication::exit(3);
    });
    QCOMPARE(QApplication::exec(), 3);
    QVERIFY(isAbove);
    QVERIFY(menuAction(u"Nouvelle fenêtre"_s));
}

void TestAppleMenuBar::comingBackToItWithoutAWindowOpensOne()
{
    QApplication::closeAllWindows();
    QTRY_VERIFY(windows().isEmpty());
    Q_EMIT qApp->applicationStateChanged(Qt::ApplicationActive);
    QTRY_COMPARE(windows().size(), 1);
}

void TestAppleMenuBar::comingBackToItWithAWindowOpensNoOther()
{
    Q_EMIT qApp->applicationStateChanged(Qt::ApplicationActive);
    QCoreApplication::processEvents();
    QCOMPARE(windows().size(), 1);
}

int main(int argc, char *argv[])
{
    const OwnHome home;
    qputenv("DBUS_SESSION_BUS_ADDRESS", "unix:path=/nonexistent");
    qunsetenv("SUPABASE_URL");
    qunsetenv("SUPABASE_KEY");
    const QApplication application(argc, argv);
    const SupabaseClient::Lifetime client(home.path() + u"/reply.json"_s);
    TestAppleMenuBar test;
    return QTest::qExec(&test, argc, argv);
}
#include "test_apple_menu_bar.moc"
