#include "platform/Text.h"
#include "support/Vectors.h"

#include <QTest>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

QStringList sorted(QStringList texts)
{
    std::ranges::sort(texts,
                      [](const QString &a, const QString &b) { return beforeByCharacter(a, b); });
    return texts;
}

QStringList distinct(QStringList texts)
{
    texts = sorted(texts);
    const auto isSame = [](const QString &a, const QString &b) { return sameText(a, b); };
    texts.erase(std::unique(texts.begin(), texts.end(), isSame), texts.end());
    return texts;
}

} // namespace

class TestText : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void trimmingTakesWhiteSpaceOffBothEnds();
    void trimmingLeavesTheInsideAlone();
    void equalSpellingsAreTheSameText();
    void theCanonicalSpellingSharesStorageWithAText();
    void textsAreSortedByTheirCharacters();
    void sortingIsAnOrder();
    void charactersAreCountedAsAPersonSeesThem();
    void noMoreCharactersAreTakenThanThereAre();
    void wordsAreCapitalised();
    void onlyValidUtf8IsText();
};

void TestText::trimmingTakesWhiteSpaceOffBothEnds()
{
    QVERIFY(
        Vectors::check(u"trimming.json"_s, {{u"text"_s}, {u"trimmed"_s}}, [](const auto &asked) {
            return Vectors::Answer{asked[u"trimmed"], trimmed(asked[u"text"].toString())};
        }));
}

void TestText::trimmingLeavesTheInsideAlone()
{
    QCOMPARE(trimmed(u" \t a \u00a0 b \u200b\n"), u"a \u00a0 b"_s);
    QCOMPARE(trimmed(u""), u""_s);
    QCOMPARE(trimmed(u" \r\n"), u""_s);
    QCOMPARE(trimmed(u"\ufeff a \u2060"), u"\ufeff a \u2060"_s);
}

void TestText::equalSpellingsAreTheSameText()
{
    QVERIFY(Vectors::check(
        u"equality.json"_s, {{u"texts"_s, Vectors::List}, {u"same"_s, Vectors::Flag}},
        [](const auto &asked) {
            const QStringList texts = Vectors::texts(asked[u"texts"]);
            const bool same = texts.size() == 2 && sameText(texts[0], texts[1]);
            const bool alike = texts.size() == 2 && canonical(texts[0]) == canonical(texts[1]);
            // Both ways to ask must say the same.
            return Vectors::Answer{QJsonArray{asked[u"same"], asked[u"same"]},
                                   QJsonArray{same, alike}};
        }));
}

void TestText::theCanonicalSpellingSharesStorageWithAText()
{
    const QString plain = u"Salle Vaudrelle"_s;
    QVERIFY(canonical(plain).constData() == plain.constData());
    const QString composed = u"\u6771 \u00e9t\u00e9 \uac00"_s;
    QVERIFY(canonical(composed).constData() == composed.constData());
    QCOMPARE(canonical(u"e\u0301"_s), u"\u00e9"_s);
}

void TestText::textsAreSortedByTheirCharacters()
{
    QVERIFY(Vectors::check(
        u"sorting.json"_s,
        {{u"texts"_s, Vectors::List}, {u"sorted"_s, Vectors::List}, {u"distinct"_s, Vectors::List}},
        [](const auto &asked) {
            const QStringList texts = Vectors::texts(asked[u"texts"]);
            return Vectors::Answer{
                QJsonArray{Vectors::spelledAlike(Vectors::texts(asked[u"sorted"])),
                           Vectors::spelledAlike(Vectors::texts(asked[u"distinct"]))},
                QJsonArray{Vectors::spelledAlike(sorted(texts)),
                           Vectors::spelledAlike(distinct(texts))}};
        }));
}

void TestText::sortingIsAnOrder()
{
    const QStringList texts{u""_s, u"a"_s, u"e\u0301"_s, u"\u00e9"_s, u"\uffff"_s, u"\U0001f600"_s};
    for (const QString &a : texts) {
        QVERIFY(!beforeByCharacter(a, a));
        for (const QString &b : texts) {
            QCOMPARE(beforeByCharacter(a, b) || beforeByCharacter(b, a), !sameText(a, b));
            QVERIFY(!(beforeByCharacter(a, b) && beforeByCharacter(b, a)));
        }
    }
    QVERIFY(beforeByCharacter(u"\uffff", u"\U0001f600"));
}

void TestText::charactersAreCountedAsAPersonSeesThem()
{
    QVERIFY(Vectors::check(
        u"characters.json"_s,
        {{u"text"_s}, {u"count"_s, Vectors::Number}, {u"n"_s, Vectors::Number}, {u"prefix"_s}},
        [](const auto &asked) {
            const QString text = asked[u"text"].toString();
            return Vectors::Answer{
                QJsonArray{asked[u"count"], asked[u"prefix"]},
                QJsonArray{characterCount(text), firstCharacters(text, asked[u"n"].toInt())}};
        }));
}

void TestText::noMoreCharactersAreTakenThanThereAre()
{
    QCOMPARE(firstCharacters(u"", 3), u""_s);
    QCOMPARE(firstCharacters(u"\u00e9t\u00e9", 0), u""_s);
    QCOMPARE(firstCharacters(u"\u00e9t\u00e9", -1), u""_s);
    QCOMPARE(firstCharacters(u"\u00e9t\u00e9", 99), u"\u00e9t\u00e9"_s);
    QCOMPARE(characterCount(u""), 0);
}

void TestText::wordsAreCapitalised()
{
    QVERIFY(Vectors::check(
        u"capitals.json"_s, {{u"text"_s}, {u"capitalised"_s}}, [](const auto &asked) {
            return Vectors::Answer{asked[u"capitalised"], capitalised(asked[u"text"].toString())};
        }));
}

void TestText::onlyValidUtf8IsText()
{
    QVERIFY(Vectors::check(
        u"utf8.json"_s, {{u"bytes"_s}, {u"text"_s, Vectors::Text | Vectors::Null}},
        [](const auto &asked) {
            const auto text =
                textOfUtf8(QByteArray::fromBase64(asked[u"bytes"].toString().toLatin1()));
            return Vectors::Answer{asked[u"text"],
                                   text ? QJsonValue(*text) : QJsonValue(QJsonValue::Null)};
        }));
}

QTEST_GUILESS_MAIN(TestText)
#include "test_text.moc"
