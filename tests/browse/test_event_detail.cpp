#include "browse/EventDetailView.h"
#include "controls/LinkLabel.h"
#include "controls/SymbolLabel.h"
#include "controls/TextLabel.h"
#include "sectionlist/SectionList.h"
#include "sectionlist/SectionListAccessible.h"
#include "support/ViewMain.h"
#include "support/WindowTest.h"

#include <QApplication>
#include <QScrollArea>
#include <QScrollBar>

#include <utility>

using namespace Qt::StringLiterals;

using namespace WindowTest;

namespace {

const Calendar &paris()
{
    static const Calendar calendar(u"fr_FR"_s, u"Europe/Paris"_s);
    return calendar;
}

Event onlyTitle()
{
    Event event;
    event.id = u"1"_s;
    event.titre = u"Marché de Noël"_s;
    return event;
}

QStringList seen(const QWidget &sheet)
{
    QStringList texts;
    const auto widgets = sheet.findChildren<QWidget *>();
    for (const QWidget *widget : widgets) {
        QString text;
        if (const auto *label = qobject_cast<const TextLabel *>(widget))
            text = label->text();
        else if (const auto *symbol = qobject_cast<const SymbolLabel *>(widget))
            text = symbol->text();
        else if (qobject_cast<const LinkLabel *>(widget))
            text = widget->accessibleName();
        if (widget->isVisible() && !text.isEmpty())
            texts.append(text.replace(QChar(0x202F), QLatin1Char(' ')));
    }
    return texts;
}

EventDetailView *detailOf(const ContentView *window)
{
    auto *sheet = window->findChild<EventDetailView *>();
    return sheet && sheet->isVisible() ? sheet : nullptr;
}

} // namespace

class TestEventDetail : public QObject {
    Q_OBJECT

public:
    explicit TestEventDetail(HttpServer &server)
        : m_server(server)
    {
    }

private Q_SLOTS:
    void anEventWithOnlyATitleShowsTheTitle();
    void everythingThatIsKnownIsShownInOrder();
    void emptyTextsAreLeftOut();
    void theDayAsStoredWinsAndAnEmptyOneGivesWay();
    void textsAreShownLetterByLetter();
    void onlyWhatFormsAnAddressIsOfferedAsALink();

    void choosingAnEventOpensItAndEscapeGoesBackToItsRow();
    void theButtonClosesToo();
    void inALowWindowTheTextScrollsOverTheButton();
    void aReloadBeneathChangesNothingInTheSheet();
    void returnInTheListOpensTheEvent();
    void whatAReaderOpenedHasTheKeyboardAfterwards();

private:
    HttpServer &m_server;
};

void TestEventDetail::anEventWithOnlyATitleShowsTheTitle()
{
    QWidget window;
    window.resize(760, 620);
    window.show();
    EventDetailView sheet(onlyTitle(), paris(), &window);
    sheet.open();
    QCOMPARE(seen(sheet), QStringList(u"Marché de Noël"_s));
    QVERIFY(button(&sheet, u"Fermer"_s));
}

void TestEventDetail::everythingThatIsKnownIsShownInOrder()
{
    QWidget window;
    window.resize(760, 620);
    window.show();
    Event event = onlyTitle();
    event.description = u"Une trentaine d’artisans."_s;
    event.date_texte = u"2026-12-05"_s;
    event.heure_texte = u"10:00"_s;
    event.lieu = u"Place de l’Église"_s;
    event.organise_par = u"Morvelle Animation"_s;
    event.contact_email = u"contact@exemple.fr"_s;
    event.link = u"https://exemple.fr"_s;
    EventDetailView sheet(event, paris(), &window);
    sheet.open();
    QCOMPARE(seen(sheet),
             QStringList({u"Marché de Noël"_s, u"Une trentaine d’artisans."_s, u"2026-12-05"_s,
                          u"10:00"_s, u"Place de l’Église"_s, u"Organisé par Morvelle Animation"_s,
                          u"contact@exemple.fr"_s, u"Ouvrir le lien"_s}));
}

void TestEventDetail::emptyTextsAreLeftOut()
{
    QWidget window;
    window.show();
    Event event = onlyTitle();
    event.description = event.lieu = event.heure_texte = event.organise_par = QString();
    event.contact_email = event.link = event.date_texte = QString();
    event.tags = QStringList();
    EventDetailView sheet(event, paris(), &window);
    sheet.open();
    QCOMPARE(seen(sheet), QStringList(u"Marché de Noël"_s));
}

void TestEventDetail::theDayAsStoredWinsAndAnEmptyOneGivesWay()
{
    QWidget window;
    window.show();
    Event event = onlyTitle();
    event.starts_at = Instant{1790845920000};
    event.date_texte = u"samedi"_s;
    EventDetailView stored(event, paris(), &window);
    stored.open();
    QVERIFY(seen(stored).contains(u"samedi"_s));
    event.date_texte = QString();
    EventDetailView formatted(event, paris(), &window);
    formatted.open();
    QVERIFY(seen(formatted).contains(u"1 oct. 2026 à 11:12"_s));
}

void TestEventDetail::textsAreShownLetterByLetter()
{
    QWidget window;
    window.show();
    Event event = onlyTitle();
    event.titre = u"<b>x</b> & y"_s;
    event.organise_par = u"<i>&amp;</i>"_s;
    EventDetailView sheet(event, paris(), &window);
    sheet.open();
    QCOMPARE(seen(sheet), QStringList({u"<b>x</b> & y"_s, u"Organisé par <i>&amp;</i>"_s}));
}

void TestEventDetail::onlyWhatFormsAnAddressIsOfferedAsALink()
{
    QWidget window;
    window.show();
    Event event = onlyTitle();
    for (const auto &[text, offered] :
         {std::pair(u"https://exemple.fr/été"_s, true), std::pair(u"exemple.fr"_s, true),
          std::pair(u"demandez à la mairie"_s, false)}) {
        event.link = text;
        EventDetailView sheet(event, paris(), &window);
        sheet.open();
        auto *link = sheet.findChild<LinkLabel *>();
        QCOMPARE(link != nullptr, offered);
        if (offered)
            QVERIFY(!link->toolTip().isEmpty());
    }
}

void TestEventDetail::choosingAnEventOpensItAndEscapeGoesBackToItsRow()
{
    m_server.answer(reply({row(u"a"_s, 1), row(u"b"_s, 2)}));
    const auto window = shownWindow();
    QTRY_VERIFY(named(window.get(), u"b"_s));
    auto *b = qobject_cast<SectionListRow *>(named(window.get(), u"b"_s));
    QTest::mouseClick(b, Qt::LeftButton);
    QTRY_VERIFY(detailOf(window.get()));
    QVERIFY(b->isSelected());
    QTest::keyClick(detailOf(window.get()), Qt::Key_Escape);
    QTRY_VERIFY(!detailOf(window.get()));
    QTRY_VERIFY(!b->isSelected());
    QCOMPARE(window->focusWidget()->accessibleName(), u"b"_s);
}

void TestEventDetail::theButtonClosesToo()
{
    m_server.answer(reply({row(u"a"_s, 1)}));
    const auto window = shownWindow();
    QTRY_VERIFY(named(window.get(), u"a"_s));
    QTest::mouseClick(named(window.get(), u"a"_s), Qt::LeftButton);
    QTRY_VERIFY(detailOf(window.get()));
    QTest::mouseClick(button(detailOf(window.get()), u"Fermer"_s), Qt::LeftButton);
    QTRY_VERIFY(!window->findChild<EventDetailView *>());
}

void TestEventDetail::inALowWindowTheTextScrollsOverTheButton()
{
    Event event = onlyTitle();
    event.description = u"Chacun apporte un bol et les voisins des histoires. "_s.repeated(120);
    QWidget window;
    window.resize(760, 620);
    window.show();
    EventDetailView sheet(event, paris(), &window);
    sheet.open();

    const auto place = [](const QWidget *widget) {
        return QRect(widget->mapToGlobal(QPoint()), widget->size());
    };
    const QRect card = sheet.card().translated(sheet.mapToGlobal(QPoint()));
    QCOMPARE(sheet.card().bottom() + 1, 620 - 16);
    const auto *close = button(&sheet, u"Fermer"_s);
    QVERIFY(close);
    const QRect fixed = place(close);
    QVERIFY(card.contains(fixed));

    auto *area = sheet.findChild<QScrollArea *>();
    const QRect seen = place(area->viewport());
    QVERIFY(seen.bottom() < fixed.top());
    const auto labels = sheet.findChildren<TextLabel *>();
    const TextLabel *text = labels.last();
    QCOMPARE(text->text(), *event.description);
    QVERIFY(seen.contains(place(text).topLeft()));
    QVERIFY(place(text).bottom() > seen.bottom());
    area->verticalScrollBar()->setValue(area->verticalScrollBar()->maximum());
    QVERIFY(seen.contains(place(text).bottomLeft()));
    QCOMPARE(place(close), fixed);
}

void TestEventDetail::aReloadBeneathChangesNothingInTheSheet()
{
    m_server.answer(reply({row(u"a"_s, 1)}));
    const auto window = shownWindow();
    QTRY_VERIFY(named(window.get(), u"a"_s));
    QTest::mouseClick(named(window.get(), u"a"_s), Qt::LeftButton);
    QTRY_VERIFY(detailOf(window.get()));

    m_server.answer(reply({row(u"b"_s, 1)}));
    const auto task = window->loadEvents();
    auto *list = window->findChild<SectionList *>();
    QTRY_VERIFY(named(list->window(), u"b"_s));
    QCOMPARE(seen(*detailOf(window.get())).first(), u"a"_s);
    // Its row is gone when it closes; the one in its place has the keyboard.
    QTest::keyClick(detailOf(window.get()), Qt::Key_Escape);
    QTRY_VERIFY(!detailOf(window.get()));
    QCOMPARE(window->focusWidget()->accessibleName(), u"b"_s);
}

void TestEventDetail::returnInTheListOpensTheEvent()
{
    m_server.answer(reply({row(u"a"_s, 1), row(u"b"_s, 2)}));
    const auto window = shownWindow();
    QTRY_VERIFY(named(window.get(), u"a"_s));
    named(window.get(), u"a"_s)->setFocus(Qt::TabFocusReason);
    QTest::keyClick(window->focusWidget(), Qt::Key_Down);
    QTest::keyClick(window->focusWidget(), Qt::Key_Return);
    QTRY_VERIFY(detailOf(window.get()));
    QCOMPARE(seen(*detailOf(window.get())).first(), u"b"_s);
}

// A reader opens what it reads, wherever the keyboard is.
void TestEventDetail::whatAReaderOpenedHasTheKeyboardAfterwards()
{
    installSectionListAccessibility();
    m_server.answer(reply({row(u"a"_s, 1), row(u"b"_s, 2)}));
    const auto window = shownWindow();
    QTRY_VERIFY(named(window.get(), u"b"_s));
    named(window.get(), u"a"_s)->setFocus(Qt::TabFocusReason);
    QAccessibleInterface *b = QAccessible::queryAccessibleInterface(named(window.get(), u"b"_s));
    const auto openAndClose = [&] {
        b->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
        QTRY_VERIFY(detailOf(window.get()));
        QTest::keyClick(detailOf(window.get()), Qt::Key_Escape);
        QTRY_VERIFY(!detailOf(window.get()));
        QCOMPARE(window->focusWidget()->accessibleName(), u"b"_s);
    };
    openAndClose();
    // Nor does it matter that the list still knows where the keyboard was last.
    named(window.get(), u"Compte"_s)->setFocus(Qt::TabFocusReason);
    openAndClose();
}

int main(int argc, char *argv[])
{
    return runWithService<TestEventDetail>(argc, argv);
}
#include "test_event_detail.moc"
