// Where the base address and the key come from.

#include "backend/BundleDictionary.h"
#include "backend/Configuration.h"
#include "support/Vectors.h"

#include <QTest>

#include <initializer_list>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

QProcessEnvironment environment(std::initializer_list<std::pair<QString, QString>> values)
{
    QProcessEnvironment result;
    for (const auto &[name, value] : values)
        result.insert(name, value);
    return result;
}

QByteArray propertyList(const QByteArray &inside)
{
    return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
           "<!DOCTYPE plist PUBLIC \"-//Apple//DTD PLIST 1.0//EN\" "
           "\"http://www.apple.com/DTDs/PropertyList-1.0.dtd\">\n"
           "<plist version=\"1.0\">\n<dict>"
        + inside + "</dict>\n</plist>\n";
}

} // namespace

class TestBackendConfiguration : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void aBaseAddressIsNormalised()
    {
        QVERIFY(Vectors::check(
            u"bases.json"_s, {{u"text"_s}, {u"base"_s}},
            [](const QJsonObject &record) -> Vectors::Answer {
                return {record[u"base"_s], normalizeURL(record[u"text"_s].toString())};
            }));
    }

    void theEnvironmentServesWhenTheBundleSaysNothing()
    {
        const auto found = Configuration::from(
            {},
            environment({{u"SUPABASE_URL"_s, u"  x.fr/ \n"_s}, {u"SUPABASE_KEY"_s, u"\tclef "_s}}));
        QCOMPARE(found.supabaseURL, u"https://x.fr/"_s);
        QCOMPARE(found.supabaseKey, u"clef"_s);
        QVERIFY(found.isComplete());
    }

    void theBundleComesBeforeTheEnvironment()
    {
        const auto found = Configuration::from(
            {{u"SUPABASE_URL"_s, u"bundle.fr"_s}, {u"SUPABASE_KEY"_s, u"bundle"_s}},
            environment(
                {{u"SUPABASE_URL"_s, u"environment.fr"_s}, {u"SUPABASE_KEY"_s, u"other"_s}}));
        QCOMPARE(found.supabaseURL, u"https://bundle.fr"_s);
        QCOMPARE(found.supabaseKey, u"bundle"_s);
    }

    void eachValueIsLookedUpByItself()
    {
        const auto found =
            Configuration::from({{u"SUPABASE_URL"_s, u"bundle.fr"_s}},
                                environment({{u"SUPABASE_URL"_s, u"environment.fr"_s},
                                             {u"SUPABASE_KEY"_s, u"environment"_s}}));
        QCOMPARE(found.supabaseURL, u"https://bundle.fr"_s);
        QCOMPARE(found.supabaseKey, u"environment"_s);
    }

    void anEmptyEntryOfTheBundleHidesTheEnvironment()
    {
        const auto found =
            Configuration::from({{u"SUPABASE_KEY"_s, u""_s}},
                                environment({{u"SUPABASE_URL"_s, u"environment.fr"_s},
                                             {u"SUPABASE_KEY"_s, u"environment"_s}}));
        QCOMPARE(found.supabaseKey, u""_s);
        QVERIFY(!found.isComplete());
    }

    void whatIsFoundNowhereIsEmpty()
    {
        const auto found = Configuration::from({}, {});
        QCOMPARE(found, Configuration());
        QVERIFY(!found.isComplete());
    }

    void whiteSpaceAloneIsNoConfiguration()
    {
        QVERIFY(!Configuration::from({},
                                     environment({{u"SUPABASE_URL"_s, u" \u200b\n"_s},
                                                  {u"SUPABASE_KEY"_s, u"k"_s}}))
                     .isComplete());
        QVERIFY(
            !Configuration::from(
                 {}, environment({{u"SUPABASE_URL"_s, u"x"_s}, {u"SUPABASE_KEY"_s, u"\u00a0"_s}}))
                 .isComplete());
    }

    void aPropertyListIsRead_data()
    {
        QTest::addColumn<QByteArray>("xml");
        QTest::addColumn<BundleDictionary>("texts");

        const BundleDictionary both{{u"SUPABASE_URL"_s, u"https://x"_s},
                                    {u"SUPABASE_KEY"_s, u"é & k"_s}};
        const QByteArray pair = "<key>SUPABASE_URL</key><string>https://x</string>"
                                "<key>SUPABASE_KEY</key> <string>\xC3\xA9 &amp; k</string>";
        QTest::newRow("two texts") << propertyList(pair) << both;
        QTest::newRow("among other kinds")
            << propertyList("<key>A</key><true/><key>B</key><array><string>no</string></array>"
                            "<key>C</key><dict><key>SUPABASE_URL</key><string>no</string></dict>"
                            + pair + "<key>D</key><integer>3</integer>")
            << both;
        QTest::newRow("an empty text")
            << propertyList("<key>A</key><string></string>") << BundleDictionary{{u"A"_s, u""_s}};
        QTest::newRow("an empty text in short")
            << propertyList("<key>A</key><string/>") << BundleDictionary{{u"A"_s, u""_s}};
        QTest::newRow("white space is kept") << propertyList("<key>A</key><string> a\n</string>")
                                             << BundleDictionary{{u"A"_s, u" a\n"_s}};
        QTest::newRow("a number is no text")
            << propertyList("<key>SUPABASE_KEY</key><integer>3</integer>") << BundleDictionary{};
        QTest::newRow("nothing inside") << propertyList("") << BundleDictionary{};
        QTest::newRow("cut short")
            << QByteArray("<plist version=\"1.0\"><dict>" + pair) << BundleDictionary{};
        QTest::newRow("something behind it")
            << QByteArray(propertyList(pair) + "<more/>") << BundleDictionary{};
        QTest::newRow("half a letter behind it")
            << QByteArray(propertyList(pair) + "\xC3") << BundleDictionary{};
        QTest::newRow("half a letter inside")
            << propertyList(pair + "<key>A</key><string>\xC3</string>") << BundleDictionary{};
        QTest::newRow("a value without a key")
            << propertyList(pair + "<string>x</string>") << BundleDictionary{};
        QTest::newRow("a key without a value")
            << propertyList(pair + "<key>x</key>") << BundleDictionary{};
        QTest::newRow("an array") << QByteArray("<plist><array/></plist>") << BundleDictionary{};
        QTest::newRow("another document") << QByteArray("<html/>") << BundleDictionary{};
        QTest::newRow("binary") << QByteArray("bplist00\x01\x02") << BundleDictionary{};
        QTest::newRow("empty") << QByteArray() << BundleDictionary{};
        QTest::newRow("a text that is no text")
            << propertyList(pair + "<key>A</key><string>a<b/></string>") << BundleDictionary{};
    }

    void aPropertyListIsRead()
    {
        QFETCH(QByteArray, xml);
        QFETCH(BundleDictionary, texts);
        QCOMPARE(readPropertyList(xml), texts);
    }
};

QTEST_GUILESS_MAIN(TestBackendConfiguration)
#include "test_backend_configuration.moc"
