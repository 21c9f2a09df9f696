#include "controls/SymbolLabel.h"
#include "controls/TextBlock.h"
#include "look/Colors.h"
#include "look/Fonts.h"
#include "support/Picture.h"

#include <QTest>

using namespace Qt::StringLiterals;

namespace {

/// How many pixels of `image` left of `x` something was painted on.
int inkLeftOf(const QImage &image, int x)
{
    int ink = 0;
    for (int row = 0; row < image.height(); ++row) {
        for (int column = 0; column < x; ++column)
            ink += image.pixelColor(column, row).alpha() > 0 ? 1 : 0;
    }
    return ink;
}

/// What the block paints, with room around it.
QImage painted(TextBlock &block, int room)
{
    QImage image(block.width() + 2 * room, block.height() + 2 * room,
                 QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    block.paint(painter, QPointF(room, room), Qt::black);
    return image;
}

} // namespace

/// Letters that reach out of their place, and blanks, in labels.
class TestTextEdges : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void noLetterIsCutAtALabelsLeftEdge_data();
    void noLetterIsCutAtALabelsLeftEdge();
    void aTextThatIsCutStillEndsInAnEllipsis();
    void aLabelInItsNaturalWidthShowsAllOfItsText();
    void blanksWithinATextStayAsStored();
    void aLabelOfOneLineShowsLineBreaksAsSpaces();
};

void TestTextEdges::noLetterIsCutAtALabelsLeftEdge_data()
{
    QTest::addColumn<int>("size");
    for (const int size : {11, 12, 13, 17, 22, 24, 48})
        QTest::addRow("%d", size) << size;
}

void TestTextEdges::noLetterIsCutAtALabelsLeftEdge()
{
    QFETCH(int, size);
    constexpr int room = 20;
    for (const auto weight : {QFont::Normal, QFont::DemiBold}) {
        for (const QString &text :
             {u"Jeudi"_s, u"jeudi\nJeudi\nVeillée"_s, u"J"_s, u"\u0237"_s, u"ÀJÂ"_s}) {
            TextBlock block(text, appFont(size, weight));
            block.layOut(400);
            QCOMPARE(inkLeftOf(painted(block, room), room), 0);
            TextBlock cut(text + u" un peu plus long que la place"_s, appFont(size, weight), 1);
            cut.layOut(5 * size);
            QVERIFY(cut.isCut());
            QCOMPARE(inkLeftOf(painted(cut, room), room), 0);
        }
    }
}

void TestTextEdges::aTextThatIsCutStillEndsInAnEllipsis()
{
    constexpr int room = 20;
    const QFont font = appFont(24);
    for (int width = 100; width < 160; ++width) {
        TextBlock block(u"Jeudi soir à Morvelle"_s, font, 1);
        block.layOut(width);
        QVERIFY(block.isCut());
        // Whole too where the letters reach out: nothing is wrapped away and nothing stands out.
        const QImage image = painted(block, room).mirrored(true, false);
        QCOMPARE(inkLeftOf(image, room - 1), 0);
        const int ellipsis = QFontMetrics(font).horizontalAdvance(QChar(0x2026));
        QVERIFY(inkLeftOf(image, room + 2 * ellipsis) > 0);
    }
}

void TestTextEdges::aLabelInItsNaturalWidthShowsAllOfItsText()
{
    for (const QString &text : {u"Jeudi"_s, u"Joyeux jour de J"_s, u"2026-11-14"_s}) {
        for (const int size : {11, 12, 13, 17, 24}) {
            TextBlock block(text, appFont(size), 1);
            block.layOut(block.naturalWidth());
            QVERIFY2(!block.isCut(), qPrintable(text));
        }
    }
}

void TestTextEdges::blanksWithinATextStayAsStored()
{
    const auto width = [](const QString &text) {
        return SymbolLabel(Symbol::MapPin, text).naturalWidth();
    };
    const int blank = width(u"a  b"_s) - width(u"a b"_s);
    QVERIFY(blank > 0);
    QVERIFY(width(u"Salle   du    haut"_s) >= width(u"Salle du haut"_s) + 5 * (blank - 1));
    QVERIFY(width(u"  Salle"_s) > width(u"Salle"_s));
    QVERIFY(width(u"19\u00A0:\u00A000"_s) > width(u"19:00"_s));
}

void TestTextEdges::aLabelOfOneLineShowsLineBreaksAsSpaces()
{
    const auto shown = [](const QString &text) {
        SymbolLabel label(Symbol::MapPin, text);
        label.resize(label.naturalWidth() + 20, label.sizeHint().height());
        return picture(label);
    };
    const QImage wanted = shown(u"Salle du haut"_s);
    for (const QString &lineBreak : {u"\n"_s, u"\r\n"_s, u"\u2028"_s, u"\u2029"_s})
        QCOMPARE(shown(u"Salle"_s + lineBreak + u"du haut"_s), wanted);
}

QTEST_MAIN(TestTextEdges)
#include "test_text_edges.moc"
