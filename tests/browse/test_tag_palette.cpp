#include "browse/TagPalette.h"

#include <QSet>
#include <QTest>

using namespace Qt::StringLiterals;

class TestTagPalette : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void thereAreTheSixColoursOfTheDesign();
    void aTagHasTheSameColourWhereverItShows();
    void twoSpellingsOfOneTagShareTheirColour();
    void tagsSpreadOverAllColours();
    void everyHashValueHasAColour();
};

void TestTagPalette::thereAreTheSixColoursOfTheDesign()
{
    QStringList names;
    for (const QColor &color : TagPalette::colors()) {
        QCOMPARE(color.alpha(), 255);
        names.append(color.name());
    }
    QCOMPARE(names.join(QLatin1Char(' ')), u"#f27340 #338cf2 #2eb880 #c75ceb #f5c22e #eb4d73"_s);
}

void TestTagPalette::aTagHasTheSameColourWhereverItShows()
{
    const QString sport = u"Sport"_s;
    const QString copy = QString::fromUtf8("Sport");
    QCOMPARE(TagPalette::color(sport, 7), TagPalette::color(copy, 7));
    QCOMPARE(TagPalette::processSeed(), TagPalette::processSeed());
}

void TestTagPalette::twoSpellingsOfOneTagShareTheirColour()
{
    for (size_t seed = 0; seed < 50; ++seed)
        QCOMPARE(TagPalette::color(u"Conf\u00e9rence", seed),
                 TagPalette::color(u"Confe\u0301rence", seed));
}

void TestTagPalette::tagsSpreadOverAllColours()
{
    QSet<QString> seen;
    for (int i = 0; i < 200; ++i)
        seen.insert(TagPalette::color(QString::number(i), 1).name());
    QCOMPARE(seen.size(), 6);

    // Another run may colour the same tag otherwise.
    QSet<QString> ofOneTag;
    for (size_t seed = 0; seed < 200; ++seed)
        ofOneTag.insert(TagPalette::color(u"Sport", seed).name());
    QCOMPARE(ofOneTag.size(), 6);
}

void TestTagPalette::everyHashValueHasAColour()
{
    // Negative hash values among them: half of all.
    for (int i = 0; i < 100'000; ++i)
        QVERIFY(TagPalette::color(QString::number(i), 3).isValid());
}

QTEST_GUILESS_MAIN(TestTagPalette)
#include "test_tag_palette.moc"
