// What a sheet looks like, and the place it takes in its window.

#include "controls/LinkLabel.h"
#include "look/Accessibility.h"
#include "look/Colors.h"
#include "support/Picture.h"
#include "support/SheetScene.h"

#include <QApplication>
#include <QDesktopServices>

using namespace Qt::StringLiterals;

namespace {

class Browser : public QObject {
    Q_OBJECT

public:
    QList<QUrl> opened;

public Q_SLOTS:
    void open(const QUrl &url) { opened.append(url); }
};

} // namespace

class TestSheet : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { installAccessibility(); }
    void init() { QApplication::setPalette(applicationPalette(ColorScheme::Light)); }

    void aSheetHangsFromTheTopOfItsWindowInTheMiddle()
    {
        SheetScene it;
        it.sheet->open();
        QVERIFY(it.sheet->isVisible());
        QVERIFY(!it.sheet->isWindow());
        QCOMPARE(it.sheet->geometry(), it.window.rect());
        QCOMPARE(it.sheet->card().topLeft(), QPoint((640 - 480) / 2, 0));
        QCOMPARE(it.sheet->card().width(), 480);
    }

    void itFollowsItsWindow()
    {
        SheetScene it;
        it.sheet->open();
        it.window.resize(700, 300);
        QTRY_COMPARE(it.sheet->geometry(), it.window.rect());
        QCOMPARE(it.sheet->card().topLeft(), QPoint(110, 0));
    }

    void inANarrowWindowItStaysClearOfTheSides()
    {
        SheetScene it;
        it.window.resize(400, 400);
        it.sheet->open();
        QCOMPARE(it.sheet->card().left(), 16);
        QCOMPARE(it.sheet->card().width(), 400 - 32);
        QCOMPARE(it.text->width(), 400 - 32 - 32);
    }

    void theWindowBehindIsDimmedAndOtherwiseLooksTheSame()
    {
        SheetScene it;
        const QImage before = picture(it.window);
        it.sheet->open();
        const QImage dimmed = picture(it.window);
        for (const QPoint at : {QPoint(30, 380), QPoint(8, 310), it.field->geometry().center()}) {
            COMPARE_COLORS(dimmed.pixelColor(at),
                           blended(dim(it.window.palette()), before.pixelColor(at)));
        }
        it.sheet->close();
        QCOMPARE(picture(it.window), before);
    }

    void theCardIsSquareAboveRoundBelowWithAnEdgeAndAShadow()
    {
        for (const auto scheme : {ColorScheme::Light, ColorScheme::Dark}) {
            QApplication::setPalette(applicationPalette(scheme));
            SheetScene it;
            it.sheet->open();
            QTRY_COMPARE(schemeOf(it.sheet->palette()), scheme);
            const QImage image = picture(it.window);
            const QRect card = it.sheet->card();
            const QColor sheet = windowColor(it.sheet->palette());
            const QColor dimmed = image.pixelColor(2, card.bottom());
            COMPARE_COLORS(image.pixelColor(card.topLeft()), sheet);
            COMPARE_COLORS(image.pixelColor(card.topRight()), sheet);
            COMPARE_COLORS(image.pixelColor(card.center().x(), card.bottom()), sheet);
            for (const QPoint corner : {card.bottomLeft(), card.bottomRight()})
                QVERIFY(image.pixelColor(corner).lightness() < sheet.lightness() - 4);

            const int middle = card.center().x();
            const auto darkness = [&image](int x, int y) {
                return 255 - image.pixelColor(x, y).lightness();
            };
            const int near = darkness(middle, card.bottom() + 2);
            QVERIFY(near > darkness(middle, card.bottom() + 20));
            QVERIFY(darkness(middle, card.bottom() + 20) > 255 - dimmed.lightness());
            QVERIFY(darkness(card.left() - 2, card.center().y()) > 255 - dimmed.lightness());
            QVERIFY(image.pixelColor(middle, card.bottom() + 1)
                    != image.pixelColor(middle, card.bottom() + 2));
        }
    }

    void aLongBodyScrollsClearOfTheWindowsEnd()
    {
        SheetScene it(sentence.repeated(200));
        it.sheet->open();
        QCOMPARE(it.sheet->card().bottom() + 1, 400 - 16);
        QVERIFY(it.bar()->maximum() > 0);
        const QPoint footer = it.button->mapTo(it.sheet, QPoint(0, it.button->height() + 10));
        QCOMPARE(footer.y(), it.sheet->card().bottom() + 1);
        QCOMPARE(it.text->width(), 480 - 32);
    }

    void aHairlineStandsWhereSomethingIsHiddenAndOnlyThere()
    {
        SheetScene it(sentence.repeated(200));
        it.sheet->open();
        const QColor line = sheetHairline(it.sheet->palette());
        const QColor plain = windowColor(it.sheet->palette());
        const QRect body(it.scroll()->mapTo(&it.window, QPoint()), it.scroll()->size());
        const int x = it.sheet->card().left() + 4; // left of all text
        // 12 clear of the heading, and of the button, whose footer has a padding of 10.
        const int above = body.top() + 12 - 1;
        const int below = body.bottom() + 1 - 2;
        const auto at = [&](int y) { return picture(it.window).pixelColor(x, y); };

        COMPARE_COLORS(at(above), plain);
        COMPARE_COLORS(at(below), line);
        it.bar()->setValue(40);
        COMPARE_COLORS(at(above), line);
        COMPARE_COLORS(at(below), line);
        it.bar()->setValue(it.bar()->maximum());
        COMPARE_COLORS(at(above), line);
        COMPARE_COLORS(at(below), plain);

        it.text->setText(sentence);
        QTRY_COMPARE(it.bar()->maximum(), 0);
        QTRY_VERIFY(it.sheet->card().height() < 300);
        const int corner = 10;
        for (int y = 0; y < it.sheet->card().height() - corner; ++y)
            COMPARE_COLORS(at(y), plain);
    }

    void theFieldThatHasTheFocusIsInSight()
    {
        SheetScene it(sentence.repeated(200));
        it.sheet->open();
        const auto isInSight = [&it] {
            const QRect place(it.entry->mapTo(it.scroll(), QPoint()), it.entry->size());
            return it.scroll()->rect().adjusted(0, 12, 0, -2).contains(place);
        };
        QVERIFY(!isInSight());
        it.entry->setFocus(Qt::TabFocusReason);
        QVERIFY(isInSight());
        it.window.resize(640, 320);
        QTRY_COMPARE(it.sheet->card().bottom() + 1, 320 - 16);
        QVERIFY(isInSight());
    }

    void theScrollBarOfALongBodyScrollsIt()
    {
        SheetScene it(sentence.repeated(200));
        it.sheet->open();
        auto *bar = it.scroll()->findChild<ThinScrollBar *>();
        QVERIFY(bar->isVisible());
        bar->setValue(120);
        QCOMPARE(it.bar()->value(), 120);
        it.bar()->setValue(40);
        QCOMPARE(bar->value(), 40);
    }

    void keysScrollALongBody()
    {
        SheetScene it(sentence.repeated(200));
        it.sheet->setInitialFocus(nullptr);
        it.sheet->open();
        QVERIFY(it.sheet->hasFocus());
        QTest::keyClick(it.sheet, Qt::Key_End);
        QCOMPARE(it.bar()->value(), it.bar()->maximum());
        QTest::keyClick(it.sheet, Qt::Key_Up);
        const int line = it.bar()->maximum() - it.bar()->value();
        QVERIFY(line > 0);
        QTest::keyClick(it.sheet, Qt::Key_PageUp);
        QVERIFY(it.bar()->value() < it.bar()->maximum() - 2 * line);
        QTest::keyClick(it.sheet, Qt::Key_Home);
        QCOMPARE(it.bar()->value(), 0);
        QTest::keyClick(it.sheet, Qt::Key_Down);
        QCOMPARE(it.bar()->value(), line);
        QTest::keyClick(it.sheet, Qt::Key_PageDown);
        QVERIFY(it.bar()->value() > 2 * line);
    }

    void aShortBodyHasNoScrollBarAndTheSheetItsHeight()
    {
        SheetScene it;
        it.sheet->setFooterLine(true);
        it.sheet->open();
        QVERIFY(!it.scroll()->findChild<ThinScrollBar *>()->isVisible());
        const int body = 16 + lineHeight(appFont(13)) + 28 + 16;
        const int footer = 10 + it.button->sizeHint().height() + 10;
        QCOMPARE(it.sheet->card().height(), 16 + lineHeight(appFont(22)) + body + 1 + footer);
    }

    void theSheetGrowsWhenItsTextDoes()
    {
        SheetScene it;
        it.sheet->open();
        const int before = it.sheet->card().height();
        it.text->setText(sentence.repeated(8));
        QTRY_VERIFY(it.sheet->card().height() >= before + 2 * lineHeight(appFont(13)));
        QCOMPARE(it.bar()->maximum(), 0);
    }

    void aDoubleClickWithinAnOpenSheetIsOne()
    {
        SheetScene it;
        it.entry->setText(u"deux mots"_s);
        it.sheet->open();
        const QPoint word = it.entry->mapTo(&it.window, QPoint(14, 14));
        QTest::mouseDClick(it.window.windowHandle(), Qt::LeftButton, {}, word);
        QCOMPARE(it.entry->selectedText(), u"deux"_s);
    }

    void aLinkOpensItsAddressByMouseKeysAndScreenReader()
    {
        Browser browser;
        QDesktopServices::setUrlHandler(u"https"_s, &browser, "open");
        const QUrl address(u"https://exemple.fr/a?b=<c>&d"_s);
        LinkLabel link(u"Ouvrir le lien"_s, address);
        link.resize(link.sizeHint());
        link.show();
        QVERIFY(link.toolTip().contains(u"https://exemple.fr/a?b="_s));
        QVERIFY(!link.toolTip().contains(u"<c>"_s));
        QTest::mouseClick(&link, Qt::LeftButton);
        QTest::keyClick(&link, Qt::Key_Return);
        QTest::keyClick(&link, Qt::Key_Space);
        auto *interface = QAccessible::queryAccessibleInterface(&link);
        QCOMPARE(interface->role(), QAccessible::Link);
        QCOMPARE(interface->text(QAccessible::Name), u"Ouvrir le lien"_s);
        interface->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
        QCOMPARE(browser.opened, QList<QUrl>(4, address));
        QDesktopServices::unsetUrlHandler(u"https"_s);
    }
};

QTEST_MAIN(TestSheet)
#include "test_sheet.moc"
