// The tags of an event, as chips in one line.

#include "browse/TagChips.h"
#include "browse/TagPalette.h"
#include "look/Colors.h"

#include <QApplication>
#include <QTest>

#include <algorithm>
#include <cstdlib>

using namespace Qt::StringLiterals;

namespace {

QImage picture(QWidget &widget)
{
    return widget.grab().toImage();
}

} // namespace

class TestTagChips : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();

    void aChipIsDrawnAsDesigned();
    void theSameTagHasTheSameColourInTwoRows();
    void chipsThatDoNotFitGiveWayToAnEllipsis();
    void theEllipsisIsReadableInTheDark();
    void chipsFollowTheFont();
    void aChipWiderThanTheRowIsCutWithin();
};

void TestTagChips::initTestCase()
{
    QApplication::setPalette(applicationPalette(ColorScheme::Light));
}

void TestTagChips::aChipIsDrawnAsDesigned()
{
    const QString tag = u"Repas"_s;
    TagChips chips;
    chips.setTags({tag});
    chips.resize(300, chips.sizeHint().height());
    const QImage image = picture(chips);

    // On its white plate, 68 % of the tag's colour.
    const QColor &color = TagPalette::color(tag, TagPalette::processSeed());
    const auto mixed = [](int part) { return qRound(255 - (255 - part) * 0.68); };
    const QColor fill = image.pixelColor(3, image.height() / 2);
    QVERIFY(std::abs(fill.red() - mixed(color.red())) <= 1);
    QVERIFY(std::abs(fill.green() - mixed(color.green())) <= 1);
    QVERIFY(std::abs(fill.blue() - mixed(color.blue())) <= 1);

    // Rounded at its corners, and 6 wider than its text on either side.
    const QColor around = applicationPalette(ColorScheme::Light).color(QPalette::Window);
    QCOMPARE(image.pixelColor(0, 0), around);
    const int chipWidth = QFontMetrics(chips.font()).horizontalAdvance(tag) + 12;
    QCOMPARE(image.pixelColor(chipWidth - 2, image.height() / 2), fill);
    QCOMPARE(image.pixelColor(chipWidth + 1, image.height() / 2), around);
    QVERIFY(chips.height() >= QFontMetrics(chips.font()).height() + 4);
}

void TestTagChips::theSameTagHasTheSameColourInTwoRows()
{
    TagChips first, second;
    first.setTags({u"Sport"_s});
    second.setTags({u"Repas"_s, u"Sport"_s});
    for (TagChips *chips : {&first, &second})
        chips->resize(300, chips->sizeHint().height());
    const int x = QFontMetrics(second.font()).horizontalAdvance(u"Repas"_s) + 12 + 6;
    QCOMPARE(picture(second).pixelColor(x + 3, 9), picture(first).pixelColor(3, 9));
}

void TestTagChips::chipsThatDoNotFitGiveWayToAnEllipsis()
{
    TagChips chips;
    chips.setTags({u"Vie du village"_s, u"Spectacle"_s, u"Jeune public"_s});
    chips.resize(1000, chips.sizeHint().height());
    chips.show();
    QVERIFY(chips.toolTip().isEmpty());
    QCOMPARE(chips.accessibleName(), u"Vie du village, Spectacle, Jeune public"_s);
    const QFontMetrics metrics(chips.font());
    const int first = metrics.horizontalAdvance(u"Vie du village"_s) + 12;
    chips.resize(first + 6 + metrics.horizontalAdvance(QChar(0x2026)), chips.height());
    QVERIFY(chips.toolTip().contains(u"Jeune public"_s));
    // The first is whole, and what follows is no part of the second.
    const QImage image = picture(chips);
    const QColor around = applicationPalette(ColorScheme::Light).color(QPalette::Window);
    QVERIFY(image.pixelColor(first - 2, 9) != around);
    QCOMPARE(image.pixelColor(first + 8, 2), around);
}

void TestTagChips::theEllipsisIsReadableInTheDark()
{
    TagChips chips;
    chips.setPalette(applicationPalette(ColorScheme::Dark));
    chips.setTags({u"Vie du village"_s, u"Spectacle"_s});
    const QFontMetrics metrics(chips.font());
    const int first = metrics.horizontalAdvance(u"Vie du village"_s) + 12;
    const int dots = metrics.horizontalAdvance(QChar(0x2026));
    chips.resize(first + 6 + dots, chips.sizeHint().height());
    chips.show();
    const QImage image = picture(chips);
    int lightest = 0;
    for (int x = first + 6; x < image.width(); ++x) {
        for (int y = 0; y < image.height(); ++y)
            lightest = std::max(lightest, image.pixelColor(x, y).lightness());
    }
    const QColor around = chips.palette().color(QPalette::Window);
    QVERIFY2(lightest > around.lightness() + 50, qPrintable(QString::number(lightest)));
}

void TestTagChips::chipsFollowTheFont()
{
    TagChips chips;
    chips.setTags({u"Vie du village"_s, u"Spectacle"_s});
    const QFontMetrics metrics(chips.font());
    chips.resize(metrics.horizontalAdvance(u"Vie du villageSpectacle"_s) + 2 * 12 + 6, 40);
    chips.show();
    QVERIFY(chips.toolTip().isEmpty());
    QFont larger = chips.font();
    larger.setPointSizeF(QFontInfo(larger).pointSizeF() * 2);
    chips.setFont(larger);
    QVERIFY(!chips.toolTip().isEmpty());
}

void TestTagChips::aChipWiderThanTheRowIsCutWithin()
{
    TagChips chips;
    chips.setTags({QString(5000, QLatin1Char('w'))});
    chips.resize(120, chips.sizeHint().height());
    QVERIFY(!chips.toolTip().isEmpty());
    const QImage image = picture(chips);
    const QColor around = applicationPalette(ColorScheme::Light).color(QPalette::Window);
    QVERIFY(image.pixelColor(100, 2) != around);
    QCOMPARE(image.pixelColor(119, 0), around); // its rounded right end is in the row
}

QTEST_MAIN(TestTagChips)
#include "test_tag_chips.moc"
