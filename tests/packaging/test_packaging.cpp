#include "backend/BundleDictionary.h"

#include <QFile>
#include <QImage>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

QString listPath(const QString &name)
{
    return QStringLiteral(AMORVELLE_LISTS "/") + name;
}

BundleDictionary list(const QString &name)
{
    QFile file(listPath(name));
    return file.open(QIODevice::ReadOnly) ? readPropertyList(file.readAll()) : BundleDictionary{};
}

/// What a program said, once it has ended well; nothing otherwise.
QByteArray said(const QString &program, const QStringList &arguments)
{
    QProcess process;
    process.start(program, arguments);
    const bool ended = process.waitForFinished(60'000);
    const QByteArray output = process.readAllStandardOutput();
    if (ended && process.exitStatus() == QProcess::NormalExit && process.exitCode() == 0)
        return output;
    qWarning("%s: %s%s", qPrintable(program), output.constData(),
             process.readAllStandardError().constData());
    return {};
}

} // namespace

/// What a package holds besides the program.
class TestPackaging : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void thePackageNamesItsProject_data();
    void thePackageNamesItsProject();
    void aPackageForNoProjectLeavesItToTheEnvironment_data();
    void aPackageForNoProjectLeavesItToTheEnvironment();
    void theBundleSaysWhatItNeeds();
    void othersReadTheBundlesListToo();
    void othersFindThePicturesInTheIcon();
};

void TestPackaging::thePackageNamesItsProject_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("macOS") << u"Bundle.plist"_s;
    QTest::newRow("elsewhere") << u"Info.plist"_s;
}

void TestPackaging::thePackageNamesItsProject()
{
    QFETCH(const QString, name);
    QCOMPARE(list(name).value(u"SUPABASE_URL"_s), u"https://village.example/?a=1&b=<2>"_s);
    QCOMPARE(list(name).value(u"SUPABASE_KEY"_s), u"public key"_s);
}

void TestPackaging::aPackageForNoProjectLeavesItToTheEnvironment_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("macOS") << u"Bundle-without.plist"_s;
    QTest::newRow("elsewhere") << u"Info-without.plist"_s;
}

void TestPackaging::aPackageForNoProjectLeavesItToTheEnvironment()
{
    QFETCH(const QString, name);
    QVERIFY(QFile::exists(listPath(name)));
    QVERIFY(!list(name).contains(u"SUPABASE_URL"_s));
    QVERIFY(!list(name).contains(u"SUPABASE_KEY"_s));
}

void TestPackaging::theBundleSaysWhatItNeeds()
{
    const BundleDictionary bundle = list(u"Bundle.plist"_s);
    QCOMPARE(bundle.value(u"LSMinimumSystemVersion"_s), u"12.0"_s);
    QCOMPARE(bundle.value(u"CFBundleIconFile"_s), u"amorvelle"_s);
    QCOMPARE(bundle.value(u"CFBundleExecutable"_s), u"aMorvelle"_s);
    QCOMPARE(bundle.value(u"CFBundlePackageType"_s), u"APPL"_s);
    QVERIFY(!bundle.value(u"CFBundleShortVersionString"_s).isEmpty());
}

void TestPackaging::othersReadTheBundlesListToo()
{
    const QTemporaryDir folder;
    const QString binary = folder.filePath(u"list"_s);
    said(u"plistutil"_s, {u"-i"_s, listPath(u"Bundle.plist"_s), u"-o"_s, binary});
    // Back from its binary form, which holds what the program understood and nothing else.
    const BundleDictionary back = readPropertyList(said(u"plistutil"_s, {u"-i"_s, binary}));
    QVERIFY(!back.isEmpty());
    QCOMPARE(back, list(u"Bundle.plist"_s));
}

void TestPackaging::othersFindThePicturesInTheIcon()
{
    const QTemporaryDir folder;
    const QString icon = folder.filePath(u"amorvelle.icns"_s);
    said(QStringLiteral(AMORVELLE_MAKE_ICON), {QStringLiteral(AMORVELLE_ICON), icon});
    said(u"icns2png"_s, {u"-x"_s, u"-o"_s, folder.path(), icon});
    // Those of its ten that this reader knows.
    for (const int pixels : {256, 512, 1024}) {
        const QImage image(folder.filePath(u"amorvelle_%1x%1x32.png"_s.arg(pixels)));
        QCOMPARE(image.size(), QSize(pixels, pixels));
        // The blue of its ground, clear at the corners.
        QCOMPARE(image.pixelColor(pixels / 2, pixels / 5).name(), u"#1f5db2"_s);
        QCOMPARE(image.pixelColor(0, 0).alpha(), 0);
    }
}

QTEST_GUILESS_MAIN(TestPackaging)
#include "test_packaging.moc"
