// What is open over the window, and the window below it meanwhile.

#include "browse/EventDetailView.h"
#include "browse/Showing.h"
#include "platform/NotificationCenter.h"
#include "support/MembersWindow.h"
#include "support/ViewMain.h"

#include <QScrollArea>
#include <QScrollBar>
#include <QSignalSpy>
#include <QWindow>

#include <memory>
#include <optional>
#include <stdexcept>
#include <utility>

using namespace Qt::StringLiterals;
using namespace WindowTest;
using namespace MembersWindow;

namespace {

const QString longText = u"Chacun apporte un bol et les voisins des histoires. "_s.repeated(120);

/// Another window in front of all others.
std::unique_ptr<QWidget> otherInFront()
{
    auto other = std::make_unique<QWidget>();
    other->resize(200, 100);
    other->show();
    other->activateWindow();
    return QTest::qWaitForWindowActive(other.get()) ? std::move(other) : nullptr;
}

/// Hears what the session announces, and fails at it.
struct FailingListener : QObject {
    FailingListener()
    {
        connect(&NotificationCenter::defaultCenter(), &NotificationCenter::posted, this,
                [] { throw std::runtime_error("no words for it"); });
    }
};

} // namespace

class TestWindowSheets : public QObject {
    Q_OBJECT

public:
    explicit TestWindowSheets(HttpServer &server)
        : m_server(server)
    {
        m_server.answerWith(
            [this](const HttpRequest &request) { return m_service.answer(request); });
    }

private Q_SLOTS:
    void init();
    void cleanup();

    void theSecondHalfOfADoubleClickLeavesTheDetailOpen();
    void returnTwiceOnARowOpensNoBrowser();
    void keysScrollTheDetailWithAndWithoutALink();
    void whatIsAskedForIsWhatShows();
    void aWindowThatGoesWithItsSheetOpenAsksForNothingAnyMore();
    void noKeyReloadsTheListUnderASheet();
    void aSaveThatEndsLeavesTheFocusWithAnotherProgram();
    void theFocusGoesBackToTheRowThatWasChanged();
    void aWindowWithAChangedFormStaysOpen();
    void aWindowWithARunningRequestStaysOpen();
    void aWindowWithAnUntouchedFormCloses();
    void aWindowWithTypedCredentialsStaysOpen();
    void aListenerThatFailsKeepsNoListFromLoading();
    void aSignInThatFailsUnexpectedlySaysSo();

private:
    bool isLoaded() const;
    void openForm() const;
    void type(const QString &name, const QString &text) const;

    HttpServer &m_server;
    Service m_service;
    std::unique_ptr<ContentView> m_window;
};

void TestWindowSheets::init()
{
    m_service = {};
    QJsonArray rows;
    for (int i = 0; i < 12; ++i)
        rows.append(row(u"r%1"_s.arg(i), 1 + i, {{u"user_id"_s, u"moi"_s}}));
    m_service.rows = rows;
    m_window = shownWindow();
    QVERIFY(m_window);
    signInAs(u"a@b.fr"_s);
    QTRY_VERIFY(isLoaded());
}

void TestWindowSheets::cleanup()
{
    m_window.reset();
}

bool TestWindowSheets::isLoaded() const
{
    return named(m_window.get(), u"r0"_s) && button(m_window.get(), u"Ajouter un événement"_s);
}

void TestWindowSheets::openForm() const
{
    click(m_window.get(), u"Ajouter un événement"_s);
    QVERIFY(sheet(m_window.get()));
}

void TestWindowSheets::type(const QString &name, const QString &text) const
{
    QLineEdit *edit = field(sheet(m_window.get()), name);
    QVERIFY(edit);
    edit->setFocus(Qt::MouseFocusReason);
    QTest::keyClicks(edit, text);
}

void TestWindowSheets::theSecondHalfOfADoubleClickLeavesTheDetailOpen()
{
    // At the place of the detail's button.
    QTest::mouseClick(named(m_window.get(), u"r0"_s), Qt::LeftButton);
    QVERIFY(sheet(m_window.get()));
    const auto *close = button(sheet(m_window.get()), u"Fermer"_s);
    const QPoint place = close->mapTo(m_window.get(), close->rect().center());
    sheet(m_window.get())->close();
    auto *list = shownList(m_window.get());
    QVERIFY(list->rowAt(list->mapFrom(m_window.get(), place)));

    QTest::mouseDClick(m_window->windowHandle(), Qt::LeftButton, {}, place);
    QVERIFY(sheet(m_window.get()));
    QCoreApplication::processEvents();
    QVERIFY(sheet(m_window.get()));
}

void TestWindowSheets::returnTwiceOnARowOpensNoBrowser()
{
    m_service.rows = {row(u"r0"_s, 1, {{u"link"_s, u"https://exemple.fr"_s}})};
    QTest::keyClick(m_window->windowHandle(), Qt::Key_F5);
    QTRY_VERIFY(!named(m_window.get(), u"r1"_s) && isLoaded());
    named(m_window.get(), u"r0"_s)->setFocus(Qt::TabFocusReason);
    QTest::keyClick(m_window->windowHandle(), Qt::Key_Return);
    QVERIFY(sheet(m_window.get()));
    const QWidget *link = named(sheet(m_window.get()), u"Ouvrir le lien"_s);
    QVERIFY(link);
    QVERIFY(!link->hasFocus());
    QVERIFY(sheet(m_window.get())->hasFocus());
    QTest::keyClick(m_window->windowHandle(), Qt::Key_Return);
    QVERIFY(sheet(m_window.get()));
}

void TestWindowSheets::keysScrollTheDetailWithAndWithoutALink()
{
    for (const QString &link : {QString(), u"https://exemple.fr"_s}) {
        Event event;
        event.id = event.titre = u"Bal"_s;
        event.description = longText;
        event.link = link;
        EventDetailView detail(event, Calendar::current(), m_window.get());
        detail.open();
        auto *bar = detail.findChild<QScrollArea *>()->verticalScrollBar();
        // Wherever the focus goes.
        for (int stop = 0; stop < 3; ++stop) {
            QWidget *focus = QApplication::focusWidget();
            bar->setValue(0);
            QTest::keyClick(focus, Qt::Key_Down);
            const int line = bar->value();
            QVERIFY(line > 0);
            QTest::keyClick(focus, Qt::Key_PageDown);
            QVERIFY(bar->value() > 3 * line);
            QTest::keyClick(focus, Qt::Key_End);
            QCOMPARE(bar->value(), bar->maximum());
            QTest::keyClick(focus, Qt::Key_Up);
            QCOMPARE(bar->value(), bar->maximum() - line);
            QTest::keyClick(focus, Qt::Key_PageUp);
            QVERIFY(bar->value() < bar->maximum() - 3 * line);
            QTest::keyClick(focus, Qt::Key_Home);
            QCOMPARE(bar->value(), 0);
            QCOMPARE(QApplication::focusWidget(), focus);
            QTest::keyClick(focus, Qt::Key_Tab);
        }
    }
}

void TestWindowSheets::whatIsAskedForIsWhatShows()
{
    Showing<Sheet> slot;
    int closed = 0;
    const auto ask = [&](const std::optional<QString> &item) {
        slot.keep(
            item,
            [&] {
                Event event;
                event.id = event.titre = *item;
                return new EventDetailView(event, Calendar::current(), m_window.get());
            },
            [&closed] { ++closed; });
    };
    ask(u"a"_s);
    QPointer<Sheet> first = sheet(m_window.get());
    QCOMPARE(first->accessibleName(), u"a"_s);
    ask(u"a"_s);
    QCOMPARE(sheet(m_window.get()), first.data());
    ask(u"b"_s);
    QVERIFY(!first || !first->isVisible());
    QVERIFY(sheet(m_window.get()));
    QCOMPARE(sheet(m_window.get())->accessibleName(), u"b"_s);
    QCOMPARE(closed, 0);
    QVERIFY(!m_window->findChild<QAbstractButton *>()->isEnabled());
    sheet(m_window.get())->close();
    QCOMPARE(closed, 1);
    ask({});
    QTRY_VERIFY(!first);
    QVERIFY(m_window->findChild<QAbstractButton *>()->isEnabled());
}

/// Its state is gone by then, and so are its lists.
void TestWindowSheets::aWindowThatGoesWithItsSheetOpenAsksForNothingAnyMore()
{
    int closed = 0;
    {
        Showing<Sheet> slot;
        const auto make = [this] { return new Sheet(200, m_window.get()); };
        slot.keep(u"a"_s, make, [&closed] { ++closed; });
        QVERIFY(sheet(m_window.get()));
    }
    m_window.reset();
    QCOMPARE(closed, 0);
}

void TestWindowSheets::noKeyReloadsTheListUnderASheet()
{
    openForm();
    const int before = count(m_server, "GET");
    QTest::keyClick(m_window->windowHandle(), Qt::Key_F5);
    QTest::keyClick(m_window->windowHandle(), Qt::Key_R, Qt::ControlModifier);
    QVERIFY(!named(m_window.get(), u"Loading events…"_s));
    sheet(m_window.get())->close();
    QTest::keyClick(m_window->windowHandle(), Qt::Key_F5);
    QVERIFY(named(m_window.get(), u"Loading events…"_s));
    QTRY_COMPARE(count(m_server, "GET"), before + 1);
}

void TestWindowSheets::aSaveThatEndsLeavesTheFocusWithAnotherProgram()
{
    m_service.toWrites = HttpAnswer::whole(204, "").whenReleased();
    openForm();
    const int before = count(m_server, "POST");
    click(sheet(m_window.get()), u"Créer"_s);
    QTRY_COMPARE(count(m_server, "POST"), before + 1);
    const auto other = otherInFront();
    QVERIFY(other);
    const QSignalSpy changed(qApp, &QGuiApplication::focusWindowChanged);
    m_server.release();
    QTRY_VERIFY(!sheet(m_window.get()));
    QTRY_VERIFY(isLoaded());
    QVERIFY(other->isActiveWindow());
    QCOMPARE(changed.count(), 0);
}

void TestWindowSheets::theFocusGoesBackToTheRowThatWasChanged()
{
    QWidget *row = named(m_window.get(), u"r1"_s);
    click(row, u"Modifier"_s);
    QVERIFY(sheet(m_window.get()));
    const int before = count(m_server, "GET");
    click(sheet(m_window.get()), u"Enregistrer"_s);
    QTRY_VERIFY(!sheet(m_window.get()));
    QTRY_COMPARE(count(m_server, "GET"), before + 1);
    QTRY_VERIFY(isLoaded());
    QVERIFY(m_window->focusWidget()->isVisible());
    QCOMPARE(m_window->focusWidget()->accessibleName(), u"r1"_s);
}

void TestWindowSheets::aWindowWithAChangedFormStaysOpen()
{
    openForm();
    type(u"Titre"_s, u" !"_s);
    for (int i = 0; i < 2; ++i) {
        QVERIFY(!m_window->close());
        QVERIFY(!m_window->windowHandle()->close());
    }
    QVERIFY(m_window->isVisible());
    QCOMPARE(field(sheet(m_window.get()), u"Titre"_s)->text(), u"Atelier création !"_s);
    QVERIFY(button(sheet(m_window.get()), u"Annuler"_s)->hasFocus());
    QTest::keyClick(m_window->windowHandle(), Qt::Key_Return);
    QVERIFY(!sheet(m_window.get()));
    QVERIFY(m_window->close());
}

void TestWindowSheets::aWindowWithARunningRequestStaysOpen()
{
    m_service.toWrites = HttpAnswer::whole(500, "non").whenReleased();
    openForm();
    const int before = count(m_server, "POST");
    click(sheet(m_window.get()), u"Créer"_s);
    QVERIFY(!m_window->close());
    QTest::keyClick(m_window->windowHandle(), Qt::Key_Escape);
    QVERIFY(sheet(m_window.get()));
    QVERIFY(button(sheet(m_window.get()), u"Annuler"_s)->hasFocus());
    QTRY_COMPARE(count(m_server, "POST"), before + 1);
    m_server.release();
    QTRY_VERIFY(button(sheet(m_window.get()), u"Créer"_s)->isEnabled());
    QVERIFY(m_window->close());
}

void TestWindowSheets::aWindowWithAnUntouchedFormCloses()
{
    openForm();
    QVERIFY(m_window->close());
    QTRY_VERIFY(!m_window->findChild<Sheet *>());
}

void TestWindowSheets::aWindowWithTypedCredentialsStaysOpen()
{
    SupabaseClient::signOut();
    SupabaseClient::clearSavedCredentials();
    QTRY_VERIFY(button(m_window.get(), u"Ajouter un compte"_s));
    click(m_window.get(), u"Ajouter un compte"_s);
    type(u"Email"_s, u"a@b.fr"_s);
    QVERIFY(!m_window->close());
    QCOMPARE(field(sheet(m_window.get()), u"Email"_s)->text(), u"a@b.fr"_s);
    QVERIFY(button(sheet(m_window.get()), u"Annuler"_s)->hasFocus());

    // While the request runs as well.
    m_service.toAccounts = HttpAnswer::whole(400, R"({"msg":"non"})").whenReleased();
    type(u"Mot de passe"_s, u"secret"_s);
    const int before = count(m_server, "POST", "/auth/");
    QTest::mouseClick(createAccount(sheet(m_window.get())), Qt::LeftButton);
    field(sheet(m_window.get()), u"Email"_s)->clear();
    field(sheet(m_window.get()), u"Mot de passe"_s)->clear();
    QVERIFY(!m_window->close());
    QTRY_COMPARE(count(m_server, "POST", "/auth/"), before + 1);
    m_server.release();
    QTRY_VERIFY(m_window->close());
}

void TestWindowSheets::aListenerThatFailsKeepsNoListFromLoading()
{
    const FailingListener listener;
    const auto window = shownWindow();
    QTRY_VERIFY(named(window.get(), u"r0"_s));
}

void TestWindowSheets::aSignInThatFailsUnexpectedlySaysSo()
{
    SupabaseClient::signOut();
    SupabaseClient::clearSavedCredentials();
    QTRY_VERIFY(button(m_window.get(), u"Ajouter un compte"_s));
    click(m_window.get(), u"Ajouter un compte"_s);
    const QPointer<Sheet> form = sheet(m_window.get());
    type(u"Email"_s, u"a@b.fr"_s);
    type(u"Mot de passe"_s, u"secret"_s);
    const FailingListener listener;
    QTest::mouseClick(createAccount(form), Qt::LeftButton);
    QTRY_VERIFY(named(form, u"An unexpected error occurred (no words for it)."_s));
    QVERIFY(createAccount(form)->isEnabled());
}

int main(int argc, char *argv[])
{
    return runWithService<TestWindowSheets>(argc, argv, installSectionListAccessibility);
}

#include "test_window_sheets.moc"
