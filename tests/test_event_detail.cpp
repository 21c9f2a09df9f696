#include "browse/EventDetailView.h"
#include "controls/LinkLabel.h"
#include "controls/SectionList.h"
#include "controls/SymbolLabel.h"
#include "controls/TextLabel.h"
#include "support/OwnHome.h"
#include "support/WindowTest.h"

#include <QApplication>
#include <QDesktopServices>
#include <QScreen>
#include <QScrollArea>
#include <QScrollBar>

using namespace WindowTest;

namespace {

const Calendar &paris()
{
    static const Calendar calendar(QStringLiteral("fr_FR"), QStringLiteral("Europe/Paris"));
    return calendar;
}

Event onlyTitle()
{
    Event event;
    event.id = QStringLiteral("1");
    event.titre = QStringLiteral("Marché de Noël");
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

/// Takes the addresses that would go to the desktop.
class Desktop : public QObject {
    Q_OBJECT
public:
    explicit Desktop(const QStringList &schemes)
        : m_schemes(schemes)
    {
        for (const QString &scheme : schemes)
            QDesktopServices::setUrlHandler(scheme, this, "open");
    }
    ~Desktop() override
    {
        for (const QString &scheme : m_schemes)
            QDesktopServices::unsetUrlHandler(scheme);
    }
    QList<QUrl> opened;

public Q_SLOTS:
    void open(const QUrl &address) { opened.append(address); }

private:
    QStringList m_schemes;
};

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
    void pagesMailAndTelephoneGoToTheDesktop_data();
    void pagesMailAndTelephoneGoToTheDesktop();
    void nothingElseIsEverOpened_data();
    void nothingElseIsEverOpened();

    void choosingAnEventOpensItAndEscapeGoesBackToItsRow();
    void theButtonClosesToo();
    void onASmallScreenTheTextScrollsOverTheButton();
    void aReloadBeneathChangesNothingInTheSheet();
    void returnInTheListOpensTheEvent();

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
    QCOMPARE(seen(sheet), QStringList(QStringLiteral("Marché de Noël")));
    QVERIFY(button(&sheet, QStringLiteral("Fermer")));
}

void TestEventDetail::everythingThatIsKnownIsShownInOrder()
{
    QWidget window;
    window.resize(760, 620);
    window.show();
    Event event = onlyTitle();
    event.description = QStringLiteral("Une trentaine d’artisans.");
    event.date_texte = QStringLiteral("2026-12-05");
    event.heure_texte = QStringLiteral("10:00");
    event.lieu = QStringLiteral("Place de l’Église");
    event.organise_par = QStringLiteral("Morvelle Animation");
    event.contact_email = QStringLiteral("contact@exemple.fr");
    event.link = QStringLiteral("https://exemple.fr");
    EventDetailView sheet(event, paris(), &window);
    sheet.open();
    QCOMPARE(seen(sheet),
             QStringList({QStringLiteral("Marché de Noël"),
                          QStringLiteral("Une trentaine d’artisans."), QStringLiteral("2026-12-05"),
                          QStringLiteral("10:00"), QStringLiteral("Place de l’Église"),
                          QStringLiteral("Organisé par Morvelle Animation"),
                          QStringLiteral("contact@exemple.fr"), QStringLiteral("Ouvrir le lien")}));
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
    QCOMPARE(seen(sheet), QStringList(QStringLiteral("Marché de Noël")));
}

void TestEventDetail::theDayAsStoredWinsAndAnEmptyOneGivesWay()
{
    QWidget window;
    window.show();
    Event event = onlyTitle();
    event.starts_at = Instant{1790845920000};
    event.date_texte = QStringLiteral("samedi");
    EventDetailView stored(event, paris(), &window);
    stored.open();
    QVERIFY(seen(stored).contains(QStringLiteral("samedi")));
    event.date_texte = QString();
    EventDetailView formatted(event, paris(), &window);
    formatted.open();
    QVERIFY(seen(formatted).contains(QStringLiteral("1 oct. 2026 à 11:12")));
}

void TestEventDetail::textsAreShownLetterByLetter()
{
    QWidget window;
    window.show();
    Event event = onlyTitle();
    event.titre = QStringLiteral("<b>x</b> & y");
    event.organise_par = QStringLiteral("<i>&amp;</i>");
    EventDetailView sheet(event, paris(), &window);
    sheet.open();
    QCOMPARE(
        seen(sheet),
        QStringList({QStringLiteral("<b>x</b> & y"), QStringLiteral("Organisé par <i>&amp;</i>")}));
}

void TestEventDetail::onlyWhatFormsAnAddressIsOfferedAsALink()
{
    QWidget window;
    window.show();
    Event event = onlyTitle();
    for (const auto &[text, offered] : {std::pair(QStringLiteral("https://exemple.fr/été"), true),
                                        std::pair(QStringLiteral("exemple.fr"), true),
                                        std::pair(QStringLiteral("demandez à la mairie"), false)}) {
        event.link = text;
        EventDetailView sheet(event, paris(), &window);
        sheet.open();
        auto *link = sheet.findChild<LinkLabel *>();
        QCOMPARE(link != nullptr, offered);
        if (offered)
            QVERIFY(!link->toolTip().isEmpty());
    }
}

void TestEventDetail::pagesMailAndTelephoneGoToTheDesktop_data()
{
    QTest::addColumn<QString>("address");
    for (const char *address :
         {"http://exemple.fr/a", "https://exemple.fr/%C3%A9t%C3%A9", "HTTPS://exemple.fr",
          "mailto:mairie@exemple.fr", "tel:+33123456789"})
        QTest::newRow(address) << QString::fromLatin1(address);
}

void TestEventDetail::pagesMailAndTelephoneGoToTheDesktop()
{
    QFETCH(QString, address);
    Desktop desktop({QStringLiteral("http"), QStringLiteral("https"), QStringLiteral("mailto"),
                     QStringLiteral("tel")});
    LinkLabel link(QStringLiteral("Ouvrir le lien"), QUrl(address));
    link.show();
    QTest::mouseClick(&link, Qt::LeftButton);
    QTest::keyClick(&link, Qt::Key_Return);
    QTest::keyClick(&link, Qt::Key_Space);
    QCOMPARE(desktop.opened, QList<QUrl>(3, QUrl(address)));
}

void TestEventDetail::nothingElseIsEverOpened_data()
{
    QTest::addColumn<QString>("address");
    for (const char *address :
         {"file:///etc/passwd", "javascript:alert(1)", "ssh://host", "FILE:///bin/sh"})
        QTest::newRow(address) << QString::fromLatin1(address);
}

void TestEventDetail::nothingElseIsEverOpened()
{
    QFETCH(QString, address);
    Desktop desktop({QUrl(address).scheme()});
    LinkLabel link(QStringLiteral("Ouvrir le lien"), QUrl(address));
    link.show();
    QTest::mouseClick(&link, Qt::LeftButton);
    QTest::keyClick(&link, Qt::Key_Return);
    QVERIFY(desktop.opened.isEmpty());
    QVERIFY(
        mayOpen(QUrl(QStringLiteral("exemple.fr")))); // what has no scheme is the desktop's affair
}

void TestEventDetail::choosingAnEventOpensItAndEscapeGoesBackToItsRow()
{
    m_server.answer(reply({row(QStringLiteral("a"), 1), row(QStringLiteral("b"), 2)}));
    const auto window = shownWindow();
    QTRY_VERIFY(named(window.get(), QStringLiteral("b")));
    auto *b = qobject_cast<SectionListRow *>(named(window.get(), QStringLiteral("b")));
    QTest::mouseClick(b, Qt::LeftButton);
    QTRY_VERIFY(detailOf(window.get()));
    QVERIFY(b->isSelected());
    QTest::keyClick(detailOf(window.get()), Qt::Key_Escape);
    QTRY_VERIFY(!detailOf(window.get()));
    QTRY_VERIFY(!b->isSelected());
    QCOMPARE(window->focusWidget()->accessibleName(), QStringLiteral("b"));
}

void TestEventDetail::theButtonClosesToo()
{
    m_server.answer(reply({row(QStringLiteral("a"), 1)}));
    const auto window = shownWindow();
    QTRY_VERIFY(named(window.get(), QStringLiteral("a")));
    QTest::mouseClick(named(window.get(), QStringLiteral("a")), Qt::LeftButton);
    QTRY_VERIFY(detailOf(window.get()));
    QTest::mouseClick(button(detailOf(window.get()), QStringLiteral("Fermer")), Qt::LeftButton);
    QTRY_VERIFY(!window->findChild<EventDetailView *>());
}

void TestEventDetail::onASmallScreenTheTextScrollsOverTheButton()
{
    constexpr int smallScreen = 768;
    Event event = onlyTitle();
    event.description =
        QStringLiteral("Chacun apporte un bol et les voisins des histoires. ").repeated(120);
    QWidget window;
    const int end = window.screen()->availableGeometry().bottom() + 1;
    window.setGeometry(20, end - smallScreen, 760, 620);
    window.show();
    EventDetailView sheet(event, paris(), &window);
    sheet.open();

    const auto place = [](const QWidget *widget) {
        return QRect(widget->mapToGlobal(QPoint()), widget->size());
    };
    const QRect card = sheet.card().translated(sheet.pos());
    QCOMPARE(card.bottom() + 1, end - 16);
    const auto *close = button(&sheet, QStringLiteral("Fermer"));
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
    QVERIFY(place(text).bottom() > end);
    area->verticalScrollBar()->setValue(area->verticalScrollBar()->maximum());
    QVERIFY(seen.contains(place(text).bottomLeft()));
    QCOMPARE(place(close), fixed);
}

void TestEventDetail::aReloadBeneathChangesNothingInTheSheet()
{
    m_server.answer(reply({row(QStringLiteral("a"), 1)}));
    const auto window = shownWindow();
    QTRY_VERIFY(named(window.get(), QStringLiteral("a")));
    QTest::mouseClick(named(window.get(), QStringLiteral("a")), Qt::LeftButton);
    QTRY_VERIFY(detailOf(window.get()));

    m_server.answer(reply({row(QStringLiteral("b"), 1)}));
    const auto task = window->loadEvents();
    auto *list = window->findChild<SectionList *>();
    QTRY_VERIFY(named(list->window(), QStringLiteral("b")));
    QCOMPARE(seen(*detailOf(window.get())).first(), QStringLiteral("a"));
    // Its row is gone when it closes; the one in its place has the keyboard.
    QTest::keyClick(detailOf(window.get()), Qt::Key_Escape);
    QTRY_VERIFY(!detailOf(window.get()));
}

void TestEventDetail::returnInTheListOpensTheEvent()
{
    m_server.answer(reply({row(QStringLiteral("a"), 1), row(QStringLiteral("b"), 2)}));
    const auto window = shownWindow();
    QTRY_VERIFY(named(window.get(), QStringLiteral("a")));
    named(window.get(), QStringLiteral("a"))->setFocus(Qt::TabFocusReason);
    QTest::keyClick(window->focusWidget(), Qt::Key_Down);
    QTest::keyClick(window->focusWidget(), Qt::Key_Return);
    QTRY_VERIFY(detailOf(window.get()));
    QCOMPARE(seen(*detailOf(window.get())).first(), QStringLiteral("b"));
}

int main(int argc, char *argv[])
{
    const OwnHome home;
    const QApplication application(argc, argv);
    HttpServer server;
    // The configuration is read once, at the first use of the service.
    qputenv("SUPABASE_URL", server.base().toLatin1());
    qputenv("SUPABASE_KEY", "public-key");
    TestEventDetail test(server);
    const int result = QTest::qExec(&test, argc, argv);
    server.hangUp();
    return result;
}
#include "test_event_detail.moc"
