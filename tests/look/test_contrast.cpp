#include "look/Colors.h"
#include "support/Picture.h"

#include <QTest>

#include <algorithm>
#include <cmath>
#include <initializer_list>

using namespace Qt::StringLiterals;

namespace {

qreal luminance(const QColor &color)
{
    const auto linear = [](float channel) {
        const qreal c = channel;
        return c <= 0.03928 ? c / 12.92 : std::pow((c + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF())
        + 0.0722 * linear(color.blueF());
}

/// As WCAG defines it.
qreal ratio(const QColor &a, const QColor &b)
{
    const auto [low, high] = std::minmax({luminance(a), luminance(b)});
    return (high + 0.05) / (low + 0.05);
}

struct Under {
    QString name;
    QColor color;
};

QColor layered(const QPalette &palette, ColorRole ground, std::initializer_list<ColorRole> layers)
{
    QColor color = ground(palette);
    for (const ColorRole layer : layers)
        color = blended(layer(palette), color);
    return color;
}

/// What secondary text stands on somewhere.
QList<Under> underText(const QPalette &palette)
{
    const auto on = [&](ColorRole ground, std::initializer_list<ColorRole> layers) {
        return layered(palette, ground, layers);
    };
    return {
        {u"window"_s, on(windowColor, {})},
        {u"pane"_s, on(surfaceColor, {})},
        {u"popup"_s, on(popupColor, {})},
        {u"hovered row"_s, on(surfaceColor, {rowHover})},
        {u"selected row"_s, on(surfaceColor, {rowSelected})},
        {u"account button"_s, on(windowColor, {accountLift, accountFill})},
        {u"open account button"_s, on(windowColor, {accountOpen})},
        {u"segment track"_s, on(windowColor, {accountLift, buttonFill})},
        {u"tag picker"_s, on(windowColor, {buttonLift, buttonFill})},
        {u"pressed tag picker"_s, on(windowColor, {buttonLift, buttonPressed})},
    };
}

QString said(const QString &what, const Under &under, qreal is)
{
    return u"%1 on %2: %3"_s.arg(what, under.name).arg(is);
}

} // namespace

/// The contrast that the desktop may ask for, and the usual one, by the formula.
class TestContrast : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void aPaletteTellsWhatItWasMadeFor();
    void anyOtherPaletteIsTakenForAUsualOne();
    void secondaryTextIsLegibleWhereverItStands_data();
    void secondaryTextIsLegibleWhereverItStands();
    void whoAsksForContrastSeesEveryHairline_data() { schemes(); }
    void whoAsksForContrastSeesEveryHairline();
    void whoAsksForContrastSeesEveryEdge_data() { schemes(); }
    void whoAsksForContrastSeesEveryEdge();

private:
    static void schemes()
    {
        QTest::addColumn<ColorScheme>("scheme");
        QTest::newRow("light") << ColorScheme::Light;
        QTest::newRow("dark") << ColorScheme::Dark;
    }
};

void TestContrast::aPaletteTellsWhatItWasMadeFor()
{
    for (const auto scheme : {ColorScheme::Light, ColorScheme::Dark}) {
        for (const auto contrast : {Contrast::Usual, Contrast::More}) {
            const QPalette palette = applicationPalette(scheme, contrast);
            QCOMPARE(schemeOf(palette), scheme);
            QCOMPARE(contrastOf(palette), contrast);
        }
    }
}

void TestContrast::anyOtherPaletteIsTakenForAUsualOne()
{
    QCOMPARE(contrastOf(QPalette()), Contrast::Usual);
    QCOMPARE(contrastOf(QPalette(QColor(Qt::black))), Contrast::Usual);
    QCOMPARE(contrastOf(QPalette(QColor(Qt::white))), Contrast::Usual);
}

void TestContrast::secondaryTextIsLegibleWhereverItStands_data()
{
    QTest::addColumn<ColorScheme>("scheme");
    QTest::addColumn<Contrast>("contrast");
    QTest::addColumn<qreal>("least");
    QTest::newRow("light") << ColorScheme::Light << Contrast::Usual << 4.5;
    QTest::newRow("dark") << ColorScheme::Dark << Contrast::Usual << 4.5;
    QTest::newRow("light, more contrast") << ColorScheme::Light << Contrast::More << 7.0;
    QTest::newRow("dark, more contrast") << ColorScheme::Dark << Contrast::More << 7.0;
}

void TestContrast::secondaryTextIsLegibleWhereverItStands()
{
    QFETCH(ColorScheme, scheme);
    QFETCH(Contrast, contrast);
    QFETCH(qreal, least);
    const QPalette palette = applicationPalette(scheme, contrast);
    for (const Under &under : underText(palette)) {
        const qreal is = ratio(secondaryText(palette), under.color);
        QVERIFY2(is >= least, qPrintable(said(u"secondary text"_s, under, is)));
        const qreal primary = ratio(primaryText(palette), under.color);
        QVERIFY2(primary > is, qPrintable(said(u"text"_s, under, primary)));
    }
}

void TestContrast::whoAsksForContrastSeesEveryHairline()
{
    QFETCH(ColorScheme, scheme);
    const QPalette palette = applicationPalette(scheme, Contrast::More);
    const QList<Under> inPane{
        {u"pane"_s, surfaceColor(palette)},
        {u"hovered row"_s, layered(palette, surfaceColor, {rowHover})},
        {u"selected row"_s, layered(palette, surfaceColor, {rowSelected})},
    };
    for (const Under &under : inPane) {
        const qreal is = ratio(hairline(palette), under.color);
        QVERIFY2(is >= 3, qPrintable(said(u"hairline"_s, under, is)));
    }
    for (const Under &under :
         {Under{u"sheet"_s, windowColor(palette)}, Under{u"popup"_s, popupColor(palette)}}) {
        const qreal is = ratio(sheetHairline(palette), under.color);
        QVERIFY2(is >= 3, qPrintable(said(u"sheet's hairline"_s, under, is)));
    }
}

void TestContrast::whoAsksForContrastSeesEveryEdge()
{
    QFETCH(ColorScheme, scheme);
    const QPalette palette = applicationPalette(scheme, Contrast::More);
    struct Edge {
        QString name;
        ColorRole role;
        QList<Under> sides;
    };
    const auto on = [&](const QString &name, ColorRole ground,
                        std::initializer_list<ColorRole> layers) {
        return Under{name, layered(palette, ground, layers)};
    };
    const Under window = on(u"window"_s, windowColor, {});
    const Under pane = on(u"pane"_s, surfaceColor, {});
    const QList<Edge> edges{
        {u"pane edge"_s, paneEdge, {window, pane}},
        {u"line of fields and buttons"_s,
         buttonLine,
         {window, pane, on(u"popup"_s, popupColor, {}),
          on(u"button"_s, windowColor, {buttonLift, buttonFill}),
          on(u"pressed button"_s, windowColor, {buttonLift, buttonPressed}),
          on(u"button on popup"_s, popupColor, {buttonLift, buttonFill})}},
        {u"edge of pickers and tracks"_s,
         controlEdge,
         {window, on(u"picker"_s, windowColor, {buttonLift, buttonFill}),
          on(u"account button"_s, windowColor, {accountLift, accountFill}),
          on(u"open account button"_s, windowColor, {accountOpen}),
          on(u"segment track"_s, windowColor, {accountLift, buttonFill}),
          on(u"chosen segment"_s, segmentFill, {})}},
        // Both stand over a shadow of the dimmed window, which darkens a card's edge as well.
        {u"card edge"_s,
         cardEdge,
         {window, on(u"popup"_s, popupColor, {}), on(u"dimmed window"_s, windowColor, {dim}),
          on(u"dimmed pane"_s, surfaceColor, {dim})}},
        {u"scroll thumb"_s, scrollThumb, {window, pane}},
    };
    for (const Edge &edge : edges) {
        QCOMPARE(edge.role(palette).alpha(), 255);
        for (const Under &side : edge.sides) {
            const qreal is = ratio(edge.role(palette), side.color);
            QVERIFY2(is >= 3, qPrintable(said(edge.name, side, is)));
        }
    }
}

QTEST_MAIN(TestContrast)
#include "test_contrast.moc"
