#include "app/OstreloApp.h"
#include "browse/ContentView.h"
#include "controls/ErrorText.h"
#include "support/AppMain.h"
#include "support/HttpServer.h"
#include "support/WindowTest.h"

#include <QApplication>
#include <QLineEdit>
#include <QMenu>
#include <QTest>

#include <algorithm>
#include <memory>

using namespace Qt::StringLiterals;

namespace {

bool hasArabicLetters(const QString &text)
{
    return std::any_of(text.begin(), text.end(),
                       [](QChar c) { return c.script() == QChar::Script_Arabic; });
}

/// What the window says that went wrong, for whoever reads of a failure.
QString errorIn(const QWidget *window)
{
    const auto *error = window->findChild<ErrorText *>();
    return error ? error->text() : QString();
}

ContentView *window()
{
    const auto widgets = QApplication::topLevelWidgets();
    for (QWidget *widget : widgets) {
        if (auto *window = qobject_cast<ContentView *>(widget); window && window->isVisible())
            return window;
    }
    return nullptr;
}

} // namespace

/// The application on a desktop whose language is written from right to left.
class TestDirection : public QObject {
    Q_OBJECT

public:
    explicit TestDirection(HttpServer &server)
        : m_server(server)
    {
        m_server.answer(WindowTest::reply({}));
    }

private Q_SLOTS:
    void theFrenchWindowReadsFromLeftToRight();
    void monthsAndDigitsStayTheUsers();
    void theToolkitSpeaksTheUsersLanguage();

private:
    HttpServer &m_server;
};

void TestDirection::theFrenchWindowReadsFromLeftToRight()
{
    const OstreloApp app;
    QTRY_VERIFY(window());
    QCOMPARE(QApplication::layoutDirection(), Qt::LeftToRight);
    QCOMPARE(window()->layoutDirection(), Qt::LeftToRight);
    const auto leftOf = [](const QString &name) {
        const QWidget *widget = WindowTest::named(window(), name);
        return widget ? widget->mapTo(window(), QPoint()).x() : -1;
    };
    QVERIFY(leftOf(u"amorvelle.fr"_s) >= 0);
    QVERIFY(leftOf(u"amorvelle.fr"_s) < leftOf(u"Compte"_s));
    QTRY_VERIFY2(WindowTest::named(window(), u"Passés"_s), qPrintable(errorIn(window())));
    QVERIFY(leftOf(u"À venir"_s) < leftOf(u"Passés"_s));
    window()->close();
    QTRY_VERIFY(!window());
}

void TestDirection::monthsAndDigitsStayTheUsers()
{
    m_server.answer(WindowTest::reply({WindowTest::row(u"Marché"_s, 1)}));
    const OstreloApp app;
    QTRY_VERIFY(window());
    QTRY_VERIFY(WindowTest::shownList(window()));
    QTRY_COMPARE(WindowTest::headings(WindowTest::shownList(window())).size(), 1);
    const QString month = WindowTest::headings(WindowTest::shownList(window())).first();
    QVERIFY2(hasArabicLetters(month), qPrintable(month));
    QVERIFY2(std::ranges::any_of(month, [](QChar c) { return c >= u'\u0660' && c <= u'\u0669'; }),
             qPrintable(month));
    window()->close();
    QTRY_VERIFY(!window());
}

void TestDirection::theToolkitSpeaksTheUsersLanguage()
{
    const OstreloApp app;
    QLineEdit field;
    field.setText(u"x"_s);
    const std::unique_ptr<QMenu> menu(field.createStandardContextMenu());
    const auto actions = menu->actions();
    QVERIFY(std::ranges::any_of(
        actions, [](const QAction *action) { return hasArabicLetters(action->text()); }));
}

int main(int argc, char *argv[])
{
    qputenv("LC_ALL", "ar_EG.UTF-8");
    return runOnDesktop<TestDirection>(argc, argv);
}
#include "test_direction.moc"
