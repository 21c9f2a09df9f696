// A desktop whose type is half as large again and more, and the smallest window: what is no sheet.

#include "browse/EventRow.h"
#include "controls/ErrorText.h"
#include "controls/TextLabel.h"
#include "look/Fonts.h"
#include "support/LargeType.h"
#include "support/MembersWindow.h"
#include "support/ViewMain.h"

#include <QScrollBar>
#include <QSet>
#include <QTextCursor>
#include <QTextEdit>

#include <algorithm>
#include <memory>

using namespace Qt::StringLiterals;
using namespace WindowTest;
using namespace MembersWindow;

namespace {

const QByteArray reason = QByteArray("une explication qui ne veut pas finir ").repeated(12);

bool isWhole(const QWidget *widget)
{
    return widget->visibleRegion().boundingRect() == widget->rect();
}

QRect place(const QWidget *widget)
{
    return QRect(widget->mapTo(widget->window(), QPoint()), widget->size());
}

QString said(const QWidget *widget)
{
    const auto *label = qobject_cast<const TextLabel *>(widget);
    return label ? label->text() : widget->accessibleName();
}

/// Every label and control outside the list.
QList<QWidget *> around(const ContentView *window)
{
    QList<QWidget *> found;
    const auto widgets = window->findChildren<QWidget *>();
    for (QWidget *widget : widgets) {
        const bool isOne = qobject_cast<QAbstractButton *>(widget)
            || qobject_cast<TextLabel *>(widget) || qobject_cast<ErrorText *>(widget);
        const QWidget *above = widget;
        while (above && !qobject_cast<const SectionList *>(above))
            above = above->parentWidget();
        if (isOne && widget->isVisible() && !above)
            found.append(widget);
    }
    return found;
}

/// The first label or control outside the list that is not whole, or lies over another.
QString whatIsCut(const ContentView *window)
{
    const auto widgets = around(window);
    for (const QWidget *widget : widgets) {
        const auto *label = qobject_cast<const TextLabel *>(widget);
        const bool hasText =
            !label || (!label->isCut() && label->height() >= label->heightForWidth(label->width()));
        const bool hasRoom = !qobject_cast<const QAbstractButton *>(widget)
            || widget->size().expandedTo(widget->sizeHint()) == widget->size();
        if (!isWhole(widget) || !hasText || !hasRoom)
            return said(widget);
        for (const QWidget *other : widgets) {
            const bool isWithin = widget->isAncestorOf(other) || other->isAncestorOf(widget);
            if (other != widget && !isWithin && place(other).intersects(place(widget)))
                return said(widget) + u" / "_s + said(other);
        }
    }
    return {};
}

} // namespace

class TestLargeWindow : public QObject {
    Q_OBJECT

public:
    explicit TestLargeWindow(HttpServer &server)
        : m_server(server)
    {
    }

private Q_SLOTS:
    void initTestCase() { QVERIFY(scaled(100) > 150); }
    void init();
    void cleanup();
    void itOpensLargerAndWithinItsScreen();
    void everyControlIsWholeInEveryState_data();
    void everyControlIsWholeInEveryState();
    void theTaglineHasTheWidthOfTheWindowBeforeItBreaks_data();
    void theTaglineHasTheWidthOfTheWindowBeforeItBreaks();
    void theFirstEventCanBeToldByItsTitle_data();
    void theFirstEventCanBeToldByItsTitle();
    void aLongReasonIsReadToItsEnd();
    void everyRowIsSeenToItsEndAndItsButtonsAreWhole();

private:
    void open();

    HttpServer &m_server;
    Service m_service;
    HttpAnswer m_events = HttpAnswer::silence();
    std::unique_ptr<ContentView> m_window;
};

void TestLargeWindow::init()
{
    m_server.answerWith([this](const HttpRequest &request) {
        return request.method == "GET" ? m_events : m_service.answer(request);
    });
}

void TestLargeWindow::cleanup()
{
    m_window.reset();
    SupabaseClient::signOut();
    SupabaseClient::clearSavedCredentials();
}

void TestLargeWindow::open()
{
    m_window = std::make_unique<ContentView>();
    m_window->resize(520, 360);
    m_window->show();
    m_window->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(m_window.get()));
}

void TestLargeWindow::itOpensLargerAndWithinItsScreen()
{
    const ContentView window;
    QCOMPARE(window.width(), scaled(760));
    QVERIFY(window.height() > 900);
    QVERIFY(window.height() <= 1000 - 40); // for its title bar
}

void TestLargeWindow::everyControlIsWholeInEveryState_data()
{
    QTest::addColumn<HttpAnswer>("events");
    QTest::addColumn<QString>("shown");
    QTest::addColumn<bool>("isMember");
    const auto failure = HttpAnswer::whole(500, reason);
    const HttpAnswer rows = reply({row(u"Marché"_s, 1)});
    for (const bool isMember : {false, true}) {
        const QByteArray who = isMember ? ", member" : ", guest";
        QTest::newRow("loading" + who) << HttpAnswer::silence() << u"Loading events…"_s << isMember;
        QTest::newRow("failed" + who) << failure << QString() << isMember;
        QTest::newRow("empty" + who) << reply({}) << u"No events found."_s << isMember;
        QTest::newRow("list" + who) << rows << u"À venir"_s << isMember;
    }
}

void TestLargeWindow::everyControlIsWholeInEveryState()
{
    QFETCH(HttpAnswer, events);
    QFETCH(QString, shown);
    QFETCH(bool, isMember);
    m_events = events;
    open();
    // A window forgets who was remembered when it opens.
    if (isMember)
        signInAs(u"camille.bertrand-de-morvelle@exemple.fr"_s);
    const auto isThere = [&] {
        const auto *error = m_window->findChild<ErrorText *>();
        return shown.isEmpty() ? error->isVisible() : named(m_window.get(), shown) != nullptr;
    };
    QTRY_VERIFY(isThere());
    QTRY_COMPARE(button(m_window.get(), u"Ajouter un événement"_s) != nullptr, isMember);
    // Not at once: what a change of the header asks for takes the layouts some turns.
    QTRY_COMPARE(whatIsCut(m_window.get()), QString());
    QVERIFY(around(m_window.get()).size() >= 4);
    const QWidget *brand = named(m_window.get(), u"amorvelle.fr"_s);
    QTRY_COMPARE(brand->height(), lineHeight(brand->font()));
}

void TestLargeWindow::theTaglineHasTheWidthOfTheWindowBeforeItBreaks_data()
{
    QTest::addColumn<bool>("isMember");
    QTest::newRow("guest") << false;
    QTest::newRow("member") << true;
}

void TestLargeWindow::theTaglineHasTheWidthOfTheWindowBeforeItBreaks()
{
    QFETCH(bool, isMember);
    m_events = HttpAnswer::whole(500, reason);
    open();
    if (isMember)
        signInAs(u"camille@exemple.fr"_s);
    QTRY_COMPARE(button(m_window.get(), u"Ajouter un événement"_s) != nullptr, isMember);
    const auto *error = m_window->findChild<ErrorText *>();
    QTRY_VERIFY(error->isVisible());
    const auto *tagline = qobject_cast<TextLabel *>(
        named(m_window.get(), u"Les événements à Morvelle et ses environs"_s));
    const auto *add =
        button(m_window.get(), isMember ? u"Ajouter un événement"_s : u"Ajouter un compte"_s);
    QVERIFY(tagline && add);
    const auto top = [this](const QWidget *of) { return of->mapTo(m_window.get(), QPoint()).y(); };
    const auto bottom = [&top](const QWidget *of) { return top(of) + of->height(); };
    QTRY_COMPARE(tagline->width(), 520 - 32);
    QTRY_COMPARE(top(add) - bottom(tagline), 10);
    QTRY_COMPARE(tagline->height(), tagline->heightForWidth(520 - 32));
    QTRY_COMPARE(top(error) - bottom(add), 12);

    // Where there is room it stands beside them.
    m_window->resize(1600, 700);
    QTRY_VERIFY(tagline->width() < 1600 - 32);
    QTRY_COMPARE(tagline->height(), lineHeight(tagline->font()));
    m_window->resize(520, 360);
    QTRY_COMPARE(tagline->width(), 520 - 32);
    QTRY_COMPARE(top(add) - bottom(tagline), 10);
}

void TestLargeWindow::theFirstEventCanBeToldByItsTitle_data()
{
    theTaglineHasTheWidthOfTheWindowBeforeItBreaks_data();
}

void TestLargeWindow::theFirstEventCanBeToldByItsTitle()
{
    QFETCH(bool, isMember);
    m_events = reply({row(u"Marché"_s, 1)});
    open();
    if (isMember)
        signInAs(u"camille@exemple.fr"_s);
    QTRY_COMPARE(button(m_window.get(), u"Ajouter un événement"_s) != nullptr, isMember);
    QTRY_VERIFY(named(m_window.get(), u"Marché"_s));
    const auto *strip = named(m_window.get(), u"À venir"_s);
    QCOMPARE(strip->height(), lineHeight(appFont(13, QFont::DemiBold)) + 18);
    if (QFontMetrics(appFont(13)).height() * 13 > 17 * appFont(13).pixelSize())
        QSKIP("The lines of this font are too tall.");
    const auto *first = m_window->findChild<EventRow *>();
    const auto isSeen = [first] {
        const auto labels = first->findChildren<TextLabel *>();
        return std::any_of(labels.begin(), labels.end(), [](const TextLabel *label) {
            return label->text() == u"Marché"_s && isWhole(label);
        });
    };
    QTRY_VERIFY(isSeen());
}

void TestLargeWindow::aLongReasonIsReadToItsEnd()
{
    m_events = HttpAnswer::whole(500, reason);
    open();
    const auto *error = m_window->findChild<ErrorText *>();
    QTRY_VERIFY(error->isVisible());
    QVERIFY(isWhole(error));
    auto *text = error->findChild<QTextEdit *>();
    QTRY_VERIFY(text->viewport()->height() >= lineHeight(error->font()));
    QScrollBar *bar = text->verticalScrollBar();
    QVERIFY(bar->isVisible());
    bar->setValue(bar->maximum());
    QTextCursor end(text->document());
    end.movePosition(QTextCursor::End);
    QVERIFY(text->viewport()->rect().contains(text->cursorRect(end).center()));
}

void TestLargeWindow::everyRowIsSeenToItsEndAndItsButtonsAreWhole()
{
    QJsonArray rows;
    for (int i = 0; i < 3; ++i)
        rows.append(row(u"Marché de Noël et de l’Épiphanie %1"_s.arg(i), 1 + i,
                        {{u"description"_s, u"Chacun apporte un bol. "_s.repeated(9)},
                         {u"lieu"_s, u"Salle Vaudrelle"_s},
                         {u"user_id"_s, u"moi"_s},
                         {u"tags"_s, QJsonArray{u"Repas"_s}}}));
    m_events = reply(rows);
    open();
    signInAs(u"camille@exemple.fr"_s);
    QTRY_VERIFY(shownList(m_window.get()));
    // The rows learn whose they are when the window does.
    QTRY_VERIFY(button(m_window.get(), u"Ajouter un événement"_s));
    SectionList *list = shownList(m_window.get());
    auto *bar = list->findChild<QScrollBar *>();
    QTRY_VERIFY(bar->maximum() > 0);
    // By its parts, since a row may be higher than the list.
    QSet<QString> seen;
    const auto look = [&] {
        for (int value = 0; value <= bar->maximum(); value += 8) {
            bar->setValue(value);
            const auto shown = list->findChildren<EventRow *>();
            for (const EventRow *one : shown) {
                const auto parts = one->findChildren<QWidget *>();
                for (const QWidget *part : parts) {
                    const bool isOne = qobject_cast<const QAbstractButton *>(part)
                        || qobject_cast<const TextLabel *>(part);
                    const QRegion region = part->visibleRegion();
                    if (isOne && region.boundingRect().bottom() == part->rect().bottom())
                        seen.insert(one->accessibleName() + u'/' + said(part));
                }
            }
        }
        return seen.size();
    };
    // Not at once: the list fills when the window's layout has come to rest.
    QTRY_VERIFY2(look() >= qsizetype{3} * 4,
                 qPrintable(QStringList(seen.begin(), seen.end()).join(u" | "_s)));
}

int main(int argc, char *argv[])
{
    const LargeType desktop;
    return runWithService<TestLargeWindow>(argc, argv);
}

#include "test_large_window.moc"
