#include "browse/AccountButton.h"

#include "look/Accessibility.h"
#include "look/Colors.h"
#include "look/Fonts.h"
#include "support/Announcements.h"
#include "support/Picture.h"
#include "support/Typing.h"

#include <QBuffer>
#include <QFontDatabase>
#include <QSignalSpy>
#include <QSvgGenerator>
#include <QTest>
#include <QXmlStreamReader>

#include <algorithm>
#include <utility>

using namespace Qt::StringLiterals;

class TestAccountButton : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { installAccessibility(); }
    void theReaderTellsTheAddressThatIsShown();
    void anAddressTooLongToBeSeenIsReadAndShownWhole();
    void anAddressIsCutOnlyWhereItDoesNotFit();
    void anAddressThatALargerFontCutsIsShownWhole();
    void howeverLittleRoomThereIsTheAddressBegins();
    void theReaderPressesIt();
    void aHeldKeyPressesOnce();
    void itsGroundStaysCalmEnoughToReadWhileItsMenuIsOpen();
};

namespace {

/// Ordinary addresses of every length.
QStringList addresses()
{
    QStringList all;
    for (const char *name : {"a", "jo", "camille", "lucie.w", "j.martin", "marie-claude",
                             "f.lefevre", "will.i.am", "wwilliams", "jean.dupont", "association"}) {
        for (const char *host : {"b.fr", "free.fr", "orange.fr", "exemple.fr", "laposte.net",
                                 "wanadoo.fr", "morvelle-animation.fr"})
            all.append(QLatin1StringView(name) + u'@' + QLatin1StringView(host));
    }
    return all;
}

/// What a widget writes, each text as it is handed to the painter.
QStringList drawnTexts(QWidget &widget)
{
    QBuffer drawing;
    QSvgGenerator generator;
    generator.setOutputDevice(&drawing);
    generator.setSize(widget.size());
    generator.setResolution(widget.logicalDpiX());
    widget.render(&generator);
    QStringList texts;
    drawing.open(QIODevice::ReadOnly);
    QXmlStreamReader reader(&drawing);
    while (!reader.atEnd()) {
        reader.readNext();
        if (reader.isStartElement() && reader.name() == u"text")
            texts.append(reader.readElementText().trimmed());
    }
    return texts;
}

} // namespace

void TestAccountButton::theReaderTellsTheAddressThatIsShown()
{
    AccountButton button;
    QCOMPARE(read(&button)->role(), QAccessible::Button);
    QCOMPARE(read(&button)->text(QAccessible::Name), u"Compte"_s);
    QCOMPARE(read(&button)->text(QAccessible::Description), QString());
    button.setEmail(u"a@exemple.fr"_s);
    QCOMPARE(read(&button)->text(QAccessible::Name), u"Compte"_s);
    QCOMPARE(read(&button)->text(QAccessible::Description), u"a@exemple.fr"_s);
    button.setEmail({});
    QCOMPARE(read(&button)->text(QAccessible::Description), QString());
}

void TestAccountButton::anAddressTooLongToBeSeenIsReadAndShownWhole()
{
    const QString address = u"une.adresse.vraiment.interminable@exemple.fr"_s;
    AccountButton button;
    button.setEmail(address);
    QVERIFY(button.toolTip().contains(address));
    QCOMPARE(read(&button)->text(QAccessible::Description), address);
}

void TestAccountButton::anAddressIsCutOnlyWhereItDoesNotFit()
{
    constexpr qreal room = 180 - 6 - 18 - 5 - 6;
    // Of fonts with the letters of an address: others draw it piece by piece.
    QStringList families = QFontDatabase::families(QFontDatabase::Latin);
    families = families.first(std::min<qsizetype>(families.size(), 8));
    families.append(appFont(11).family());
    AccountButton button;
    int whole = 0;
    int cut = 0;
    for (const QString &family : std::as_const(families)) {
        for (int size = 9; size <= 16; ++size) {
            QFont font(family);
            font.setPixelSize(size);
            button.setFont(font);
            for (const QString &address : addresses()) {
                button.setEmail(address);
                button.resize(button.sizeHint());
                const bool fits = QFontMetricsF(font).horizontalAdvance(address) <= room;
                const QString where = u"%1 in %2 %3"_s.arg(address, family).arg(size);
                QVERIFY2(drawnTexts(button).contains(address) == fits, qPrintable(where));
                QVERIFY2(button.toolTip().contains(address) == !fits, qPrintable(where));
                ++(fits ? whole : cut);
            }
        }
    }
    QVERIFY(whole > 0 && cut > 0);
}

void TestAccountButton::anAddressThatALargerFontCutsIsShownWhole()
{
    AccountButton button;
    button.setEmail(u"jo@exemple.fr"_s);
    QVERIFY(button.toolTip().isEmpty());
    button.setFont(appFont(30));
    QVERIFY(button.toolTip().contains(u"jo@exemple.fr"_s));
}

void TestAccountButton::howeverLittleRoomThereIsTheAddressBegins()
{
    AccountButton button;
    button.setEmail(u"camille@exemple.fr"_s);
    button.setRoom(10);
    QCOMPARE(button.sizeHint().width(), 6 + 18 + 5 + 2 * button.fontMetrics().height() + 6);
    button.resize(button.sizeHint());
    const QStringList drawn = drawnTexts(button);
    QCOMPARE(drawn.size(), 1);
    QVERIFY2(drawn.first().startsWith(u'c'), qPrintable(drawn.first()));
}

void TestAccountButton::theReaderPressesIt()
{
    AccountButton button;
    int pressed = 0;
    connect(&button, &QAbstractButton::clicked, this, [&pressed] { ++pressed; });
    auto *actions = read(&button)->actionInterface();
    QVERIFY(actions->actionNames().contains(QAccessibleActionInterface::pressAction()));
    actions->doAction(QAccessibleActionInterface::pressAction());
    QTRY_COMPARE(pressed, 1);
}

void TestAccountButton::aHeldKeyPressesOnce()
{
    AccountButton button;
    button.show();
    QSignalSpy clicked(&button, &QAbstractButton::clicked);
    hold(&button, Qt::Key_Return);
    QCOMPARE(clicked.count(), 1);
    hold(&button, Qt::Key_Space);
    QCOMPARE(clicked.count(), 2);
}

void TestAccountButton::itsGroundStaysCalmEnoughToReadWhileItsMenuIsOpen()
{
    for (const auto scheme : {ColorScheme::Light, ColorScheme::Dark}) {
        QApplication::setPalette(applicationPalette(scheme));
        AccountButton button;
        button.setEmail(u"a@exemple.fr"_s);
        button.resize(button.sizeHint());
        const QPalette palette = QApplication::palette();
        const QPoint ground(button.width() / 2, 1);
        const QColor closed =
            blended(accountFill(palette), blended(accountLift(palette), windowColor(palette)));
        COMPARE_COLORS(picture(button).pixelColor(ground), closed);
        button.setOpen(true);
        COMPARE_COLORS(picture(button).pixelColor(ground),
                       blended(accountOpen(palette), windowColor(palette)));
    }
}

QTEST_MAIN(TestAccountButton)
#include "test_account_button.moc"
