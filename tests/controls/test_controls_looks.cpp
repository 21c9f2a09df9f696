#include "controls/IconButton.h"
#include "controls/Pane.h"
#include "controls/Spinner.h"
#include "controls/TabStrip.h"
#include "controls/TextLabel.h"
#include "controls/ThinScrollBar.h"
#include "look/Colors.h"
#include "look/Fonts.h"
#include "look/Symbols.h"
#include "support/Picture.h"

#include <QAbstractButton>
#include <QTest>
#include <QVBoxLayout>

#include <algorithm>
#include <array>
#include <cmath>
#include <utility>

using namespace Qt::StringLiterals;

Q_DECLARE_METATYPE(ColorRole)

namespace {

qreal luminance(const QColor &color)
{
    const auto linear = [](qreal c) {
        return c <= 0.03928 ? c / 12.92 : std::pow((c + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF())
        + 0.0722 * linear(color.blueF());
}

qreal contrast(const QColor &a, const QColor &b)
{
    const qreal brighter = std::max(luminance(a), luminance(b));
    const qreal darker = std::min(luminance(a), luminance(b));
    return (brighter + 0.05) / (darker + 0.05);
}

QList<QAbstractButton *> tabsOf(const TabStrip &strip)
{
    auto tabs = strip.findChildren<QAbstractButton *>();
    std::ranges::sort(tabs, {}, [](QAbstractButton *tab) { return tab->x(); });
    return tabs;
}

constexpr std::array symbols{Symbol::Calendar,    Symbol::Clock,    Symbol::MapPin,
                             Symbol::Person,      Symbol::People,   Symbol::Envelope,
                             Symbol::Plus,        Symbol::Pencil,   Symbol::Trash,
                             Symbol::ChevronDown, Symbol::Checkmark};

} // namespace

class TestControlsLooks : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init() { QApplication::setPalette(applicationPalette(ColorScheme::Light)); }

    void eachRoleHasItsColourInBothSchemes_data()
    {
        QTest::addColumn<ColorRole>("role");
        QTest::addColumn<QColor>("light");
        QTest::addColumn<QColor>("dark");
        const auto shade = [](int grey, qreal alpha) {
            return QColor(grey, grey, grey, qRound(alpha * 255));
        };
        const auto hex = [](const char *name) { return QColor(QLatin1String(name)); };
        QTest::newRow("window") << &windowColor << hex("#F2F2F4") << hex("#2D2D31");
        QTest::newRow("surface") << &surfaceColor << hex("#FFFFFF") << hex("#232326");
        QTest::newRow("popup") << &popupColor << hex("#FFFFFF") << hex("#313136");
        QTest::newRow("text") << &primaryText << hex("#1C1C1F") << hex("#F2F2F4");
        QTest::newRow("secondary") << &secondaryText << hex("#5C5C65") << hex("#BCBCC4");
        QTest::newRow("hairline") << &hairline << hex("#E2E2E6") << hex("#38383C");
        QTest::newRow("pane edge") << &paneEdge << hex("#D8D8DD") << hex("#38383C");
        QTest::newRow("sheet hairline") << &sheetHairline << hex("#E2E2E6") << hex("#45454B");
        QTest::newRow("accent") << &accent << hex("#1F5DB2") << hex("#3A73C4");
        QTest::newRow("text on accent") << &accentText << hex("#FFFFFF") << hex("#FFFFFF");
        QTest::newRow("accent ink") << &accentInk << hex("#1F5DB2") << hex("#93BCF7");
        QTest::newRow("red") << &red << hex("#B2202B") << hex("#FF9A92");
        QTest::newRow("row hover") << &rowHover << shade(0, 0.04) << shade(255, 0.06);
        QTest::newRow("icon hover") << &iconButtonHover << shade(0, 0.06) << shade(255, 0.08);
        QTest::newRow("menu hover") << &menuHover << shade(0, 0.07) << shade(255, 0.09);
        QTest::newRow("account open") << &accountOpen << shade(0, 0.10) << shade(255, 0.12);
        QTest::newRow("button lift") << &buttonLift << shade(255, 0) << shade(255, 0.12);
        QTest::newRow("account lift") << &accountLift << shade(255, 0) << shade(255, 0.07);
        QTest::newRow("plate") << &chipPlate << hex("#FFFFFF") << hex("#B8B8BE");
        QTest::newRow("segment") << &segmentFill << hex("#FFFFFF") << hex("#56565D");
        QTest::newRow("dim") << &dim << shade(0, 0.18) << shade(0, 0.36);
        QTest::newRow("card edge") << &cardEdge << shade(0, 0.12) << shade(255, 0.12);
        QTest::newRow("thumb") << &scrollThumb << shade(0, 0.18) << shade(255, 0.20);
        QTest::newRow("track") << &spinnerTrack << shade(0, 0.10) << shade(255, 0.14);
    }

    void eachRoleHasItsColourInBothSchemes()
    {
        QFETCH(ColorRole, role);
        QFETCH(QColor, light);
        QFETCH(QColor, dark);
        QCOMPARE(role(applicationPalette(ColorScheme::Light)).rgba(), light.rgba());
        QCOMPARE(role(applicationPalette(ColorScheme::Dark)).rgba(), dark.rgba());
    }

    void textIsLegibleOnEverySurfaceInBothSchemes()
    {
        for (const auto scheme : {ColorScheme::Light, ColorScheme::Dark}) {
            const auto palette = applicationPalette(scheme);
            const QColor surface = surfaceColor(palette);
            const QList<QColor> surfaces{windowColor(palette), surface,
                                         blended(rowHover(palette), surface),
                                         blended(rowSelected(palette), surface)};
            for (const auto &under : surfaces) {
                for (const ColorRole role : {primaryText, secondaryText, red})
                    QVERIFY(contrast(role(palette), under) >= 4.5);
                QVERIFY(contrast(accentInk(palette), under) >= 3);
            }
            QVERIFY(contrast(accentText(palette), accent(palette)) >= 4.5);
        }
    }

    void settingAnotherPaletteRecoloursWhatIsShown()
    {
        TextLabel label(u"████"_s, appFont(24));
        label.resize(label.sizeHint());
        label.show();
        const QPoint middle = label.rect().center();
        COMPARE_COLORS(picture(label).pixelColor(middle), QColor(0x1C1C1F));
        QApplication::setPalette(applicationPalette(ColorScheme::Dark));
        QTRY_COMPARE(schemeOf(label.palette()), ColorScheme::Dark);
        COMPARE_COLORS(picture(label).pixelColor(middle), QColor(0xF2F2F4));
    }

    void everySymbolIsThereInItsColourAndSharpOnFineScreens()
    {
        for (const auto symbol : symbols) {
            for (const qreal ratio : {1.0, 1.5, 2.0}) {
                const QColor tint(178, 32, 43);
                const auto image = symbolPixmap(symbol, 16, tint, ratio).toImage();
                QCOMPARE(image.width(), qCeil(16 * ratio));
                QCOMPARE(image.devicePixelRatio(), ratio);
                int inked = 0;
                for (int y = 0; y < image.height(); ++y) {
                    for (int x = 0; x < image.width(); ++x) {
                        const QColor pixel = image.pixelColor(x, y);
                        if (pixel.alpha() < 250)
                            continue;
                        COMPARE_COLORS(pixel, tint);
                        ++inked;
                    }
                }
                if (ratio == 2.0)
                    QVERIFY2(inked > 20, qPrintable(QString::number(static_cast<int>(symbol))));
            }
        }
    }

    void thePaneHasAnEdgeAndCutsItsContentToRoundCorners()
    {
        Pane pane;
        auto *content = new QWidget;
        QPalette loud = content->palette();
        loud.setColor(QPalette::Window, Qt::green);
        content->setPalette(loud);
        content->setAutoFillBackground(true);
        pane.setContent(content);
        pane.resize(100, 60);
        pane.show();
        for (const int ratio : {1, 2}) {
            const QImage image = picture(pane, ratio);
            const auto at = [&](int x, int y) { return image.pixelColor(x * ratio, y * ratio); };
            COMPARE_COLORS(at(0, 0), windowColor(pane.palette()));
            COMPARE_COLORS(at(99, 59), windowColor(pane.palette()));
            COMPARE_COLORS(at(0, 30), paneEdge(pane.palette()));
            COMPARE_COLORS(at(50, 59), paneEdge(pane.palette()));
            COMPARE_COLORS(at(1, 30), QColor(Qt::green));
            COMPARE_COLORS(at(50, 58), QColor(Qt::green));
        }
    }

    void theChosenTabIsUnderlinedAsWideAsItsLabelOverTheHairline()
    {
        TabStrip strip;
        strip.addTab(u"À venir"_s);
        strip.addTab(u"Passés"_s);
        strip.resize(400, strip.sizeHint().height());
        strip.show();
        QCOMPARE(strip.height(), 36);
        const auto tabs = tabsOf(strip);
        const int label = tabs[0]->width() - 24;
        const QImage image = picture(strip);
        const QColor ink = accentInk(strip.palette());
        for (const int y : {34, 35}) {
            COMPARE_COLORS(image.pixelColor(14, y), ink);
            COMPARE_COLORS(image.pixelColor(12 + label - 2, y), ink);
        }
        COMPARE_COLORS(image.pixelColor(10, 35), hairline(strip.palette()));
        COMPARE_COLORS(image.pixelColor(12 + label + 1, 35), hairline(strip.palette()));
        COMPARE_COLORS(image.pixelColor(399, 35), hairline(strip.palette()));
        COMPARE_COLORS(image.pixelColor(14, 33), windowColor(strip.palette()));
    }

    void choosingATabMovesNothing()
    {
        TabStrip strip;
        strip.addTab(u"À venir"_s);
        strip.addTab(u"Passés"_s);
        strip.resize(400, 36);
        strip.show();
        const auto tabs = tabsOf(strip);
        const QRect first = tabs[0]->geometry();
        const QRect second = tabs[1]->geometry();
        QCOMPARE(second.left() + 12 - (first.right() + 1 - 12), 24);
        strip.setCurrentIndex(1);
        QCOMPARE(tabs[0]->geometry(), first);
        QCOMPARE(tabs[1]->geometry(), second);
    }

    void theSpinnerTurnsOnlyWhileItIsSeen()
    {
        QWidget window;
        Spinner spinner(&window);
        QVERIFY(!spinner.isTurning());
        window.show();
        QVERIFY(spinner.isTurning());
        window.hide();
        QVERIFY(!spinner.isTurning());
        QCOMPARE(spinner.sizeHint(), QSize(24, 24));
    }

    void theSpinnerHasAnArcOnItsTrack()
    {
        Spinner spinner;
        spinner.resize(24, 24);
        const QImage image = picture(spinner, 4);
        const QColor window = windowColor(spinner.palette());
        COMPARE_COLORS(image.pixelColor(75, 21), secondaryText(spinner.palette()));
        COMPARE_COLORS(image.pixelColor(21, 75), blended(spinnerTrack(spinner.palette()), window));
        COMPARE_COLORS(image.pixelColor(48, 48), window);
    }

    void theScrollBarShowsAThinThumbInTheMiddleOfItsGutter()
    {
        ThinScrollBar bar;
        QCOMPARE(bar.sizeHint().width(), 12);
        bar.setRange(0, 100);
        bar.setPageStep(100);
        bar.resize(12, 204);
        const QImage image = picture(bar);
        const QColor window = windowColor(bar.palette());
        const QColor thumb = blended(scrollThumb(bar.palette()), window);
        COMPARE_COLORS(image.pixelColor(2, 40), window);
        COMPARE_COLORS(image.pixelColor(3, 40), thumb);
        COMPARE_COLORS(image.pixelColor(8, 40), thumb);
        COMPARE_COLORS(image.pixelColor(9, 40), window);
        COMPARE_COLORS(image.pixelColor(5, 1), window);
        COMPARE_COLORS(image.pixelColor(5, 99), thumb);
        COMPARE_COLORS(image.pixelColor(5, 103), window);
    }

    void aScrollBarWithNothingToScrollShowsNoThumb()
    {
        ThinScrollBar bar;
        bar.setRange(0, 0);
        bar.resize(12, 100);
        const QImage image = picture(bar);
        for (int y = 0; y < 100; ++y)
            COMPARE_COLORS(image.pixelColor(5, y), windowColor(bar.palette()));
    }

    void theThumbFollowsTheMouseFromAnywhereInTheGutter()
    {
        ThinScrollBar bar;
        bar.setRange(0, 100);
        bar.setPageStep(100);
        bar.resize(12, 204);
        bar.show();
        QTest::mousePress(&bar, Qt::LeftButton, {}, {1, 20});
        QTest::mouseMove(&bar, {1, 70});
        QTest::mouseRelease(&bar, Qt::LeftButton, {}, {1, 70});
        QCOMPARE(bar.value(), 50);
    }

    void theIconButtonIsATargetOf24WithASquareUnderThePointer()
    {
        IconButton button(Symbol::Pencil, u"Modifier"_s);
        QCOMPARE(button.sizeHint(), QSize(24, 24));
        button.resize(24, 24);
        const QColor window = windowColor(button.palette());
        COMPARE_COLORS(picture(button).pixelColor(12, 1), window);
        button.setAttribute(Qt::WA_UnderMouse);
        COMPARE_COLORS(picture(button).pixelColor(12, 1),
                       blended(iconButtonHover(button.palette()), window));
        COMPARE_COLORS(picture(button).pixelColor(0, 0), window);
        button.setDown(true);
        COMPARE_COLORS(picture(button).pixelColor(12, 1),
                       blended(iconButtonPressed(button.palette()), window));
    }

    void typeGrowsOnlyWithADesktopThatAsksForLargeType_data()
    {
        QTest::addColumn<double>("desktop");
        QTest::addColumn<double>("factor");
        QTest::newRow("small") << 9.0 << 1.0;
        QTest::newRow("as drawn") << 13.0 << 1.0;
        QTest::newRow("a little larger") << 15.0 << 1.0;
        QTest::newRow("exactly a quarter") << 16.25 << 1.0;
        QTest::newRow("more than a quarter") << 16.9 << 1.3;
        QTest::newRow("twice") << 26.0 << 2.0;
    }

    void typeGrowsOnlyWithADesktopThatAsksForLargeType()
    {
        QFETCH(double, desktop);
        QFETCH(double, factor);
        QCOMPARE(typeFactor(desktop), factor);
    }

    void linesAreAsHighAsDrawnAndNeverLowerThanTheFont()
    {
        const QList<std::pair<int, int>> drawn{{24, 30}, {22, 28}, {20, 24}, {17, 22},
                                               {13, 18}, {12, 16}, {11, 14}};
        for (const auto &[size, height] : drawn) {
            QFont font = appFont(13);
            font.setPixelSize(size);
            QVERIFY(lineHeight(font) >= height);
            QVERIFY(lineHeight(font) >= QFontMetricsF(font).height());
            QVERIFY(lineHeight(font) <= std::max<qreal>(height, QFontMetricsF(font).height() + 1));
        }
    }
};

QTEST_MAIN(TestControlsLooks)
#include "test_controls_looks.moc"
