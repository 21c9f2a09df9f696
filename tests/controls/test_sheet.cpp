#include "app/ButtonStyles.h"
#include "controls/LinkLabel.h"
#include "controls/Sheet.h"
#include "controls/TextLabel.h"
#include "controls/ThinScrollBar.h"
#include "look/Accessibility.h"
#include "look/Colors.h"
#include "look/Fonts.h"
#include "support/Picture.h"

#include <QApplication>
#include <QDesktopServices>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QScreen>
#include <QScrollArea>
#include <QSignalSpy>
#include <QTest>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

namespace {

const QString sentence = u"Une trentaine d’artisans, vin chaud et crêpes. "_s;

/// A window with a sheet of three parts over it.
struct Scene {
    QWidget window;
    QLineEdit *field = new QLineEdit(&window);
    Sheet *sheet = new Sheet(480, &window);
    TextLabel *text = new TextLabel({}, appFont(13));
    SecondaryButton *button = new SecondaryButton(u"Fermer"_s);

    explicit Scene(const QString &body = sentence)
    {
        auto *header = new QWidget;
        auto *headerColumn = new QVBoxLayout(header);
        headerColumn->setContentsMargins(16, 16, 16, 0);
        headerColumn->addWidget(new TextLabel(u"Titre"_s, appFont(22)));
        sheet->setHeader(header);

        auto *content = new QWidget;
        auto *contentColumn = new QVBoxLayout(content);
        contentColumn->setContentsMargins(16, 16, 16, 16);
        contentColumn->addWidget(text);
        contentColumn->addStretch();
        text->setText(body);
        sheet->setBody(content);

        auto *footer = new QWidget;
        auto *row = new QHBoxLayout(footer);
        row->setContentsMargins(16, 10, 16, 10);
        row->addStretch();
        row->addWidget(button);
        sheet->setFooter(footer);
        sheet->setFooterLine(true);
        sheet->setInitialFocus(button);
        window.setGeometry(20, 40, 640, 400);
        window.show();
        window.activateWindow();
    }

    QRect card() const { return sheet->card().translated(sheet->geometry().topLeft()); }
    QScrollArea *scroll() const { return sheet->findChild<QScrollArea *>(); }
    QWidget *dimming() const
    {
        const auto children = window.findChildren<QWidget *>(QString(), Qt::FindDirectChildrenOnly);
        for (auto *child : children) {
            if (!child->isWindow() && child->size() == window.size())
                return child;
        }
        return nullptr;
    }
};

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
        Scene it;
        it.sheet->open();
        QVERIFY(it.sheet->isVisible());
        QCOMPARE(it.card().width(), 480);
        QCOMPARE(it.card().left(), 20 + (640 - 480) / 2);
        QCOMPARE(it.card().top(), 40);
        QCOMPARE(it.sheet->windowModality(), Qt::WindowModal);
    }

    void itFollowsItsWindow()
    {
        Scene it;
        it.sheet->open();
        it.window.move(70, 60);
        QTRY_COMPARE(it.card().topLeft(), it.window.mapToGlobal(QPoint(80, 0)));
        it.window.resize(700, 300);
        QTRY_COMPARE(it.card().topLeft(), it.window.mapToGlobal(QPoint(110, 0)));
        QCOMPARE(it.dimming()->size(), it.window.size());
    }

    void theWindowBehindIsDimmedAndTakesNoInput()
    {
        Scene it;
        QVERIFY(!it.dimming());
        it.sheet->open();
        QVERIFY(it.dimming());
        const QColor dimmed = picture(it.window).pixelColor(600, 380);
        COMPARE_COLORS(dimmed, blended(dim(it.window.palette()), windowColor(it.window.palette())));
        QTest::mouseClick(it.window.windowHandle(), Qt::LeftButton, {}, {5, 5});
        QTest::keyClick(it.window.windowHandle(), Qt::Key_X);
        QVERIFY(it.field->text().isEmpty());
        it.sheet->close();
        QVERIFY(!it.dimming());
    }

    void theCardIsSquareAboveRoundBelowWithAnEdgeAndAShadow()
    {
        for (const auto scheme : {ColorScheme::Light, ColorScheme::Dark}) {
            QApplication::setPalette(applicationPalette(scheme));
            Scene it;
            it.sheet->open();
            QTRY_COMPARE(schemeOf(it.sheet->palette()), scheme);
            QImage image(it.sheet->size(), QImage::Format_ARGB32_Premultiplied);
            image.fill(Qt::transparent);
            it.sheet->render(&image, {}, {}, QWidget::DrawChildren);
            const QRect card = it.sheet->card();
            const QColor sheet = windowColor(it.sheet->palette());
            COMPARE_COLORS(image.pixelColor(card.topLeft()), sheet);
            COMPARE_COLORS(image.pixelColor(card.topRight()), sheet);
            COMPARE_COLORS(image.pixelColor(card.center().x(), card.bottom()), sheet);
            QVERIFY(image.pixelColor(card.bottomLeft()).alphaF() < 0.7);
            QVERIFY(image.pixelColor(card.bottomRight()).alphaF() < 0.7);

            const int middle = card.center().x();
            const qreal edge = image.pixelColor(middle, card.bottom() + 1).alphaF();
            const qreal near = image.pixelColor(middle, card.bottom() + 2).alphaF();
            const qreal far = image.pixelColor(middle, image.height() - 1).alphaF();
            QVERIFY(edge > near);
            QVERIFY(near > 0.1);
            QVERIFY(far < 0.02);
            QVERIFY(image.pixelColor(0, card.center().y()).alphaF() < 0.02);
        }
    }

    void aLongBodyScrollsClearOfTheEndOfTheScreen()
    {
        Scene it(sentence.repeated(200));
        it.sheet->open();
        const int end = it.window.screen()->availableGeometry().bottom() + 1;
        QCOMPARE(it.card().bottom() + 1, end - 16);
        QVERIFY(it.scroll()->verticalScrollBar()->maximum() > 0);
        const QPoint footer = it.button->mapTo(it.sheet, QPoint(0, it.button->height() + 10));
        QCOMPARE(footer.y(), it.sheet->card().bottom() + 1);
        QCOMPARE(it.text->width(), 480 - 32);
    }

    void theScrollBarOfALongBodyScrollsIt()
    {
        Scene it(sentence.repeated(200));
        it.sheet->open();
        auto *bar = it.scroll()->findChild<ThinScrollBar *>();
        QVERIFY(bar->isVisible());
        bar->setValue(120);
        QCOMPARE(it.scroll()->verticalScrollBar()->value(), 120);
        it.scroll()->verticalScrollBar()->setValue(40);
        QCOMPARE(bar->value(), 40);
    }

    void aShortBodyHasNoScrollBarAndTheSheetItsHeight()
    {
        Scene it;
        it.sheet->open();
        QVERIFY(!it.scroll()->findChild<ThinScrollBar *>()->isVisible());
        const int body = 16 + lineHeight(appFont(13)) + 16;
        QCOMPARE(it.card().height(), 16 + lineHeight(appFont(22)) + body + 1 + 48);
    }

    void theSheetGrowsWhenItsTextDoes()
    {
        Scene it;
        it.sheet->open();
        const int before = it.card().height();
        it.text->setText(sentence.repeated(8));
        QTRY_VERIFY(it.card().height() >= before + 2 * lineHeight(appFont(13)));
        QCOMPARE(it.scroll()->verticalScrollBar()->maximum(), 0);
    }

    void cancelClosesASheetThatAllowsItAndSaysSoOnce()
    {
        Scene it;
        QSignalSpy closed(it.sheet, &Sheet::closed);
        it.sheet->setClosesOnCancel(true);
        it.sheet->open();
        QTest::keyClick(it.button, Qt::Key_Escape);
        QVERIFY(!it.sheet->isVisible());
        QCOMPARE(closed.count(), 1);
        it.sheet->open();
        QVERIFY(it.sheet->isVisible());
        it.sheet->close();
        QCOMPARE(closed.count(), 2);
    }

    void cancelLeavesAFormOpen()
    {
        Scene it;
        QSignalSpy closed(it.sheet, &Sheet::closed);
        it.sheet->open();
        QTest::keyClick(it.button, Qt::Key_Escape);
        QVERIFY(it.sheet->isVisible());
        QCOMPARE(closed.count(), 0);
    }

    void whatHasTheFocusAtOpeningShowsItsRing()
    {
        Scene it;
        it.sheet->open();
        QTRY_VERIFY(it.button->hasFocus());
        const QPoint place = it.button->mapTo(it.sheet, QPoint(20, -2));
        COMPARE_COLORS(picture(*it.sheet).pixelColor(place), accentInk(it.sheet->palette()));
    }

    void aSheetThatGoesWithItsWindowTakesItsDimmingAlong()
    {
        Scene it;
        it.sheet->open();
        delete it.sheet;
        QVERIFY(!it.dimming());
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
