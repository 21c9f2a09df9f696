#include "platform/UserDefaults.h"

#include <QDir>
#include <QFile>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTest>

#include <sys/stat.h>

#include <memory>
#include <optional>

using namespace Qt::StringLiterals;

namespace {

mode_t modeOf(const QString &path)
{
    struct stat about { };
    return ::lstat(QFile::encodeName(path).constData(), &about) == 0 ? about.st_mode & 07777 : 0;
}

void write(const QString &path, const QByteArray &content)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
        qFatal("cannot write a temporary file");
}

} // namespace

class TestUserDefaults : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init();
    void whatWasSetIsThere();
    void theLastValueStands();
    void whatWasRemovedIsGone();
    void othersCannotReadAValue();
    void aLinkIsNotFollowed();
    void aFolderInTheValuesPlaceIsLeftAlone();
    void aPipeInTheValuesPlaceHoldsNothingUp();
    void anUnreadableValueIsAbsent();
    void aValueThatMayOnlyBeReadIsReadAndReplaced();
    void aFolderThatCannotBeMadeIsNoFault();
    void aValueTooLargeIsNotOurs();
    void aValueThatCouldNotBeReadBackIsRefused();
    void whatAKilledProgramLeftGoesWithTheValue();
    void theUsersOwnAreInTheConfigurationFolder();

private:
    QString path() const { return m_folder->filePath(u"config/aMorvelle/key"_s); }
    UserDefaults defaults() const
    {
        return UserDefaults(m_folder->filePath(u"config/aMorvelle"_s));
    }

    std::unique_ptr<QTemporaryDir> m_folder;
};

void TestUserDefaults::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    QVERIFY(m_folder->isValid());
}

void TestUserDefaults::whatWasSetIsThere()
{
    QCOMPARE(defaults().data(u"key"_s), std::nullopt);
    const QByteArray value("a\0b\n", 4);
    defaults().set(u"key"_s, value);
    QCOMPARE(defaults().data(u"key"_s), value);
    QCOMPARE(defaults().data(u"other"_s), std::nullopt);
    defaults().set(u"key"_s, QByteArray());
    QCOMPARE(defaults().data(u"key"_s), QByteArray());
}

void TestUserDefaults::theLastValueStands()
{
    defaults().set(u"key"_s, "a longer one");
    defaults().set(u"key"_s, "short");
    QCOMPARE(defaults().data(u"key"_s), QByteArray("short"));
    QCOMPARE(QDir(QFileInfo(path()).path())
                 .entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot),
             QStringList{u"key"_s});
}

void TestUserDefaults::whatWasRemovedIsGone()
{
    defaults().remove(u"key"_s);
    defaults().set(u"key"_s, "a");
    defaults().remove(u"key"_s);
    QCOMPARE(defaults().data(u"key"_s), std::nullopt);
    QVERIFY(!QFile::exists(path()));
}

void TestUserDefaults::othersCannotReadAValue()
{
    const mode_t mask = ::umask(0);
    defaults().set(u"key"_s, "a");
    ::umask(mask);
    QCOMPARE(modeOf(path()), mode_t{0600});
    QCOMPARE(modeOf(QFileInfo(path()).path()), mode_t{0700});
    QCOMPARE(modeOf(m_folder->filePath(u"config"_s)), mode_t{0700});

    QVERIFY(::chmod(QFile::encodeName(path()).constData(), 0644) == 0);
    QVERIFY(::chmod(QFile::encodeName(QFileInfo(path()).path()).constData(), 0755) == 0);
    defaults().set(u"key"_s, "b");
    QCOMPARE(modeOf(path()), mode_t{0600});
    QCOMPARE(modeOf(QFileInfo(path()).path()), mode_t{0700});
}

void TestUserDefaults::aLinkIsNotFollowed()
{
    const QString elsewhere = m_folder->filePath(u"elsewhere"_s);
    write(elsewhere, "theirs");
    QVERIFY(QDir().mkpath(QFileInfo(path()).path()));
    QVERIFY(QFile::link(elsewhere, path()));
    QCOMPARE(defaults().data(u"key"_s), std::nullopt);

    defaults().set(u"key"_s, "ours");
    QFile file(elsewhere);
    QVERIFY(file.open(QIODevice::ReadOnly));
    QCOMPARE(file.readAll(), QByteArray("theirs"));
    QCOMPARE(defaults().data(u"key"_s), QByteArray("ours"));

    QVERIFY(QFile::remove(path()) && QFile::link(elsewhere, path()));
    defaults().remove(u"key"_s);
    QVERIFY(!QFileInfo(path()).isSymLink());
    QVERIFY(QFile::exists(elsewhere));
}

void TestUserDefaults::aFolderInTheValuesPlaceIsLeftAlone()
{
    QVERIFY(QDir().mkpath(path()));
    write(path() + u"/file"_s, "a");
    QCOMPARE(defaults().data(u"key"_s), std::nullopt);
    defaults().set(u"key"_s, "a");
    defaults().remove(u"key"_s);
    QCOMPARE(defaults().data(u"key"_s), std::nullopt);
    QVERIFY(QFile::exists(path() + u"/file"_s));
    QCOMPARE(QDir(QFileInfo(path()).path())
                 .entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot),
             QStringList{u"key"_s});
}

void TestUserDefaults::aPipeInTheValuesPlaceHoldsNothingUp()
{
    QVERIFY(QDir().mkpath(QFileInfo(path()).path()));
    QVERIFY(::mkfifo(QFile::encodeName(path()).constData(), 0600) == 0);
    QCOMPARE(defaults().data(u"key"_s), std::nullopt);
    defaults().set(u"key"_s, "ours");
    QCOMPARE(defaults().data(u"key"_s), QByteArray("ours"));
}

void TestUserDefaults::anUnreadableValueIsAbsent()
{
    defaults().set(u"key"_s, "a");
    QVERIFY(::chmod(QFile::encodeName(path()).constData(), 0) == 0);
    if (::geteuid() != 0)
        QCOMPARE(defaults().data(u"key"_s), std::nullopt);
    defaults().set(u"key"_s, "b");
    QCOMPARE(defaults().data(u"key"_s), QByteArray("b"));
}

void TestUserDefaults::aValueThatMayOnlyBeReadIsReadAndReplaced()
{
    const QByteArray folder = QFile::encodeName(QFileInfo(path()).path());
    const QByteArray file = QFile::encodeName(path());
    defaults().set(u"key"_s, "a");
    QCOMPARE(::chmod(file.constData(), 0400), 0);
    QCOMPARE(::chmod(folder.constData(), 0500), 0);
    QCOMPARE(defaults().data(u"key"_s), QByteArray("a"));
    defaults().set(u"key"_s, "b");
    QCOMPARE(defaults().data(u"key"_s), QByteArray("b"));
    QCOMPARE(::chmod(file.constData(), 0400), 0);
    defaults().remove(u"key"_s);
    QVERIFY(!QFile::exists(path()));
}

void TestUserDefaults::aFolderThatCannotBeMadeIsNoFault()
{
    // A file stands where the folder should be: the same for everyone, the administrator too.
    write(m_folder->filePath(u"config"_s), "a");
    defaults().set(u"key"_s, "a");
    defaults().remove(u"key"_s);
    QCOMPARE(defaults().data(u"key"_s), std::nullopt);
    UserDefaults nowhere(u"/proc/nowhere/aMorvelle"_s);
    nowhere.set(u"key"_s, "a");
    QCOMPARE(nowhere.data(u"key"_s), std::nullopt);
}

void TestUserDefaults::aValueTooLargeIsNotOurs()
{
    QVERIFY(QDir().mkpath(QFileInfo(path()).path()));
    write(path(), QByteArray(2'000'000, 'a'));
    QCOMPARE(defaults().data(u"key"_s), std::nullopt);
}

void TestUserDefaults::aValueThatCouldNotBeReadBackIsRefused()
{
    const QByteArray largest(1'048'576, 'a');
    defaults().set(u"key"_s, largest);
    QCOMPARE(defaults().data(u"key"_s), largest);
    defaults().set(u"key"_s, largest + 'a');
    QCOMPARE(defaults().data(u"key"_s), largest);
}

void TestUserDefaults::whatAKilledProgramLeftGoesWithTheValue()
{
    defaults().set(u"key"_s, "a");
    write(path() + u".draft-Ab3dEf"_s, "secr");
    defaults().set(u"other"_s, "b");
    defaults().remove(u"key"_s);
    QCOMPARE(QDir(QFileInfo(path()).path())
                 .entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot),
             QStringList{u"other"_s});
}

void TestUserDefaults::theUsersOwnAreInTheConfigurationFolder()
{
#ifdef Q_OS_MACOS
    QSKIP("the preferences of macOS have no folder");
#endif
    UserDefaults::standard().set(u"key"_s, "a");
    QCOMPARE(UserDefaults::standard().data(u"key"_s), QByteArray("a"));
    QVERIFY(QFile::exists(QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation)
                          + u"/aMorvelle/key"_s));
    UserDefaults::standard().remove(u"key"_s);
}

int main(int argc, char **argv)
{
    QTemporaryDir home;
    qputenv("XDG_CONFIG_HOME", home.path().toUtf8());
    QCoreApplication app(argc, argv);
    TestUserDefaults test;
    return QTest::qExec(&test, argc, argv);
}

#include "test_user_defaults.moc"
