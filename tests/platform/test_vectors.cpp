#include "support/Vectors.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <variant>

using namespace Qt::StringLiterals;

class TestVectors : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void aFileOfTheWantedFormIsRead();
    void anUnusableFileFails_data();
    void anUnusableFileFails();
    void aMissingFileFails();
    void theFolderOfTheEnvironmentComesFirst();
    void aWrongAnswerFails();

private:
    QString write(const QByteArray &content);

    QTemporaryDir m_folder;
    const QList<Vectors::Key> m_form{{u"text"_s},
                                     {u"ms"_s, Vectors::Number | Vectors::Null},
                                     {u"says"_s, Vectors::Text | Vectors::Absent}};
};

QString TestVectors::write(const QByteArray &content)
{
    QFile file(m_folder.filePath(u"cases.json"_s));
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
        qFatal("cannot write a temporary file");
    return file.fileName();
}

void TestVectors::aFileOfTheWantedFormIsRead()
{
    const auto read = Vectors::read(
        write(
            R"({"note": "", "cases": [{"text": "a", "ms": 1}, {"text": "b", "ms": null, "says": ""}]})"),
        m_form);
    QVERIFY(std::holds_alternative<Vectors::Cases>(read));
    QCOMPARE(std::get<Vectors::Cases>(read).size(), 2);
    QCOMPARE(std::get<Vectors::Cases>(read)[0][u"text"], u"a"_s);
}

void TestVectors::anUnusableFileFails_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::newRow("empty") << QByteArray();
    QTest::newRow("no JSON") << QByteArray("cases");
    QTest::newRow("cut off") << QByteArray(R"({"note": "", "cases": [{"text": "a", "ms": 1})");
    QTest::newRow("a list") << QByteArray(R"([{"text": "a", "ms": 1}])");
    QTest::newRow("no note") << QByteArray(R"({"cases": [{"text": "a", "ms": 1}]})");
    QTest::newRow("no cases") << QByteArray(R"({"note": "", "cases": []})");
    QTest::newRow("cases that are no list")
        << QByteArray(R"({"note": "", "cases": {"text": "a"}})");
    QTest::newRow("a case that is no record") << QByteArray(R"({"note": "", "cases": ["a"]})");
    QTest::newRow("a key is missing") << QByteArray(R"({"note": "", "cases": [{"text": "a"}]})");
    QTest::newRow("a key too many")
        << QByteArray(R"({"note": "", "cases": [{"text": "a", "ms": 1, "more": 1}]})");
    QTest::newRow("a value of another kind")
        << QByteArray(R"({"note": "", "cases": [{"text": 1, "ms": 1}]})");
    QTest::newRow("a later case is unknown")
        << QByteArray(R"({"note": "", "cases": [{"text": "a", "ms": 1}, {}]})");
}

void TestVectors::anUnusableFileFails()
{
    QFETCH(QByteArray, content);
    QVERIFY(std::holds_alternative<Vectors::Problem>(Vectors::read(write(content), m_form)));
}

void TestVectors::aMissingFileFails()
{
    const auto read = Vectors::read(m_folder.filePath(u"none.json"_s), m_form);
    QVERIFY(std::holds_alternative<Vectors::Problem>(read));
    QVERIFY(std::get<Vectors::Problem>(read).text.contains(u"none.json"));
}

void TestVectors::theFolderOfTheEnvironmentComesFirst()
{
    write(R"({"note": "", "cases": [{"text": "a", "ms": 1}]})");
    const auto right = [](const auto &asked) { return Vectors::Answer{asked[u"ms"], 1}; };
    qputenv("AMORVELLE_VECTORS", m_folder.path().toUtf8());
    QVERIFY(Vectors::check(u"cases.json"_s, m_form, right));
    qunsetenv("AMORVELLE_VECTORS");
    QVERIFY(!Vectors::check(u"cases.json"_s, m_form, right));
}

void TestVectors::aWrongAnswerFails()
{
    write(R"({"note": "", "cases": [{"text": "\u00e9", "ms": 1}, {"text": "b", "ms": 2}]})");
    qputenv("AMORVELLE_VECTORS", m_folder.path().toUtf8());
    QVERIFY(!Vectors::check(u"cases.json"_s, m_form, [](const auto &asked) {
        return Vectors::Answer{asked[u"ms"], 2};
    }));
    qunsetenv("AMORVELLE_VECTORS");
}

QTEST_GUILESS_MAIN(TestVectors)
#include "test_vectors.moc"
