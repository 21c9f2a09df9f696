#include "account/CredentialsStore.h"

#include <QTemporaryDir>
#include <QTest>

#include <memory>
#include <optional>
#include <utility>

using namespace Qt::StringLiterals;

class TestCredentialsStore : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void nothingIsRememberedAtFirst();
    void whatWasSavedIsRemembered_data();
    void whatWasSavedIsRemembered();
    void theSecondRecordReplacesTheFirst();
    void anUnreadableRecordIsNoneAndStays_data();
    void anUnreadableRecordIsNoneAndStays();
    void aRecordThatCannotBeSavedIsNoFault();
};

namespace {

class TemporaryDefaults : public UserDefaults {
public:
    TemporaryDefaults()
        : TemporaryDefaults(std::make_unique<QTemporaryDir>())
    {
    }

private:
    explicit TemporaryDefaults(std::unique_ptr<QTemporaryDir> folder)
        : UserDefaults(folder->filePath(u"aMorvelle"_s))
        , m_folder(std::move(folder))
    {
    }

    std::unique_ptr<QTemporaryDir> m_folder;
};

const QString key = CredentialsStore::key.toString();

} // namespace

void TestCredentialsStore::nothingIsRememberedAtFirst()
{
    const TemporaryDefaults defaults;
    QCOMPARE(CredentialsStore::loadCredentials(defaults), std::nullopt);
}

void TestCredentialsStore::whatWasSavedIsRemembered_data()
{
    QTest::addColumn<QString>("email");
    QTest::addColumn<QString>("password");
    QTest::newRow("plain") << u"a@b.fr"_s << u"secret"_s;
    QTest::newRow("quotes and backslashes") << u"\"é\"\\@b.fr"_s << u"\\\\\"\n\t\u0001/"_s;
    QTest::newRow("other scripts") << u"日本@例え.jp"_s << u"\U0001f600\ufeff"_s;
    QTest::newRow("empty") << u""_s << u""_s;
    QTest::newRow("spaces stay") << u" a@b.fr "_s << u" \u00a0"_s;
}

void TestCredentialsStore::whatWasSavedIsRemembered()
{
    QFETCH(QString, email);
    QFETCH(QString, password);
    TemporaryDefaults defaults;
    CredentialsStore::save({email, password}, defaults);
    QCOMPARE(CredentialsStore::loadCredentials(defaults), (Credentials{email, password}));
}

void TestCredentialsStore::theSecondRecordReplacesTheFirst()
{
    TemporaryDefaults defaults;
    CredentialsStore::save({u"first@b.fr"_s, u"a long password"_s}, defaults);
    CredentialsStore::save({u"b@b.fr"_s, u"p"_s}, defaults);
    QCOMPARE(CredentialsStore::loadCredentials(defaults), (Credentials{u"b@b.fr"_s, u"p"_s}));
    QCOMPARE(defaults.data(key), QByteArray(R"({"email":"b@b.fr","password":"p"})"));
    defaults.remove(key);
    QCOMPARE(CredentialsStore::loadCredentials(defaults), std::nullopt);
}

void TestCredentialsStore::anUnreadableRecordIsNoneAndStays_data()
{
    QTest::addColumn<QByteArray>("record");
    QTest::newRow("empty") << QByteArray("");
    QTest::newRow("no JSON") << QByteArray("a@b.fr");
    QTest::newRow("cut off") << QByteArray(R"({"email":"a@b.fr","pass)");
    QTest::newRow("no password") << QByteArray(R"({"email":"a@b.fr"})");
    QTest::newRow("no e-mail") << QByteArray(R"({"password":"p"})");
    QTest::newRow("a number") << QByteArray(R"({"email":"a@b.fr","password":1})");
    QTest::newRow("a list") << QByteArray(R"(["a@b.fr","p"])");
}

void TestCredentialsStore::anUnreadableRecordIsNoneAndStays()
{
    QFETCH(QByteArray, record);
    TemporaryDefaults defaults;
    defaults.set(key, record);
    QCOMPARE(CredentialsStore::loadCredentials(defaults), std::nullopt);
    QCOMPARE(defaults.data(key), record);
}

void TestCredentialsStore::aRecordThatCannotBeSavedIsNoFault()
{
    UserDefaults nowhere(u"/proc/nowhere"_s);
    CredentialsStore::save({u"a@b.fr"_s, u"p"_s}, nowhere);
    QCOMPARE(CredentialsStore::loadCredentials(nowhere), std::nullopt);
}

QTEST_GUILESS_MAIN(TestCredentialsStore)
#include "test_credentials_store.moc"
