#include "apple/StandInCoreFoundation.h"
#include "backend/BundleDictionary.h"
#include "platform/UserDefaults.h"

#include <QTest>

#include <optional>

using namespace Qt::StringLiterals;
namespace System = StandInCoreFoundation;

/// What macOS keeps for the program: its bundle's dictionary and its preferences.
class TestAppleSystem : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void cleanup();

    void theBundleNamesTheProject();
    void anEmptyTextInTheBundleCounts();
    void whatIsNoTextInTheBundleCountsAsAbsent();
    void aProgramWithoutABundleHasNoDictionary();

    void whatWasSetIsThereAndWrittenOut();
    void theLastValueStands();
    void whatWasRemovedIsGoneAndWrittenOut();
    void whatIsNotOursUnderTheKeyCountsAsAbsent();
};

void TestAppleSystem::cleanup()
{
    // Everything that was handed over was given back.
    QCOMPARE(System::held(), 0);
    System::bundle().reset();
    System::preferences().clear();
}

void TestAppleSystem::theBundleNamesTheProject()
{
    System::bundle() = {{u"SUPABASE_URL"_s, u"https://village.example"_s},
                        {u"SUPABASE_KEY"_s, u"public-key"_s},
                        {u"CFBundleName"_s, u"aMorvelle"_s}};
    const BundleDictionary wanted{{u"SUPABASE_URL"_s, u"https://village.example"_s},
                                  {u"SUPABASE_KEY"_s, u"public-key"_s}};
    QCOMPARE(mainBundleDictionary(), wanted);
}

void TestAppleSystem::anEmptyTextInTheBundleCounts()
{
    System::bundle() = {{u"SUPABASE_URL"_s, QString()}};
    QVERIFY(mainBundleDictionary().contains(u"SUPABASE_URL"_s));
    QVERIFY(!mainBundleDictionary().contains(u"SUPABASE_KEY"_s));
}

void TestAppleSystem::whatIsNoTextInTheBundleCountsAsAbsent()
{
    System::bundle() = {{u"SUPABASE_URL"_s, QByteArray("https://village.example")}};
    QVERIFY(mainBundleDictionary().isEmpty());
}

void TestAppleSystem::aProgramWithoutABundleHasNoDictionary()
{
    QVERIFY(mainBundleDictionary().isEmpty());
}

void TestAppleSystem::whatWasSetIsThereAndWrittenOut()
{
    UserDefaults::standard().set(u"key"_s, "a value");
    QCOMPARE(UserDefaults::standard().data(u"key"_s), QByteArray("a value"));
    QVERIFY(System::writtenPreferences().value(u"key"_s) == System::Value(QByteArray("a value")));
}

void TestAppleSystem::theLastValueStands()
{
    UserDefaults::standard().set(u"key"_s, "first");
    UserDefaults::standard().set(u"key"_s, "second");
    QCOMPARE(UserDefaults::standard().data(u"key"_s), QByteArray("second"));
}

void TestAppleSystem::whatWasRemovedIsGoneAndWrittenOut()
{
    UserDefaults::standard().set(u"key"_s, "a value");
    UserDefaults::standard().remove(u"key"_s);
    QCOMPARE(UserDefaults::standard().data(u"key"_s), std::nullopt);
    QVERIFY(!System::writtenPreferences().contains(u"key"_s));
}

void TestAppleSystem::whatIsNotOursUnderTheKeyCountsAsAbsent()
{
    System::preferences().insert(u"key"_s, u"a text"_s);
    QCOMPARE(UserDefaults::standard().data(u"key"_s), std::nullopt);
}

QTEST_GUILESS_MAIN(TestAppleSystem)
#include "test_apple_system.moc"
