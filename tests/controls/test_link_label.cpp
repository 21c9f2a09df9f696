// What the desktop is asked to open for an address that somebody else wrote.

#include "controls/LinkLabel.h"
#include "support/Typing.h"

#include <QDesktopServices>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

/// Takes the addresses that would go to the desktop.
class Desktop : public QObject {
    Q_OBJECT

public:
    Desktop()
    {
        for (const QString &scheme : schemes)
            QDesktopServices::setUrlHandler(scheme, this, "open");
    }
    ~Desktop() override
    {
        for (const QString &scheme : schemes)
            QDesktopServices::unsetUrlHandler(scheme);
    }
    QList<QUrl> opened;

public Q_SLOTS:
    void open(const QUrl &address) { opened.append(address); }

private:
    // The empty one is what the toolkit takes for a path.
    const QStringList schemes{QString(), u"http"_s, u"https"_s,      u"mailto"_s,
                              u"tel"_s,  u"file"_s, u"javascript"_s, u"ssh"_s,
                              u"ftp"_s,  u"data"_s, u"exemple.fr"_s};
};

/// What comes of one click, one Return, one Space and one press by a screen reader.
QList<QUrl> openedFor(const QString &address)
{
    const Desktop desktop;
    LinkLabel link(u"Ouvrir le lien"_s, QUrl(address));
    link.show();
    QTest::mouseClick(&link, Qt::LeftButton);
    QTest::keyClick(&link, Qt::Key_Return);
    QTest::keyClick(&link, Qt::Key_Space);
    link.press();
    return desktop.opened;
}

} // namespace

class TestLinkLabel : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void pagesMailAndTelephoneGoToTheDesktop_data()
    {
        QTest::addColumn<QString>("address");
        for (const QString &address :
             {u"http://exemple.fr/a"_s, u"https://exemple.fr/%C3%A9t%C3%A9"_s,
              u"HTTPS://exemple.fr"_s, u"mailto:mairie@exemple.fr"_s, u"tel:+33123456789"_s})
            QTest::newRow(qPrintable(address)) << address;
    }

    void pagesMailAndTelephoneGoToTheDesktop()
    {
        QFETCH(QString, address);
        QCOMPARE(openedFor(address), QList<QUrl>(4, QUrl(address)));
    }

    void whatBeginsWithAHostOpensAsAPage_data()
    {
        QTest::addColumn<QString>("address");
        QTest::addColumn<QString>("page");
        const auto row = [](const QString &address, const QString &page) {
            QTest::newRow(qPrintable(address)) << address << page;
        };
        row(u"www.exemple.fr/fete"_s, u"https://www.exemple.fr/fete"_s);
        row(u"exemple.fr"_s, u"https://exemple.fr"_s);
        row(u"www.x.fr/p?q=1#f"_s, u"https://www.x.fr/p?q=1#f"_s);
        row(u"exemple.fr?q=a/b"_s, u"https://exemple.fr?q=a/b"_s);
        row(u"fête.exemple.fr/été"_s, u"https://fête.exemple.fr/été"_s);
        row(u"exemple.fr/%C3%A9t%C3%A9%2F2026"_s, u"https://exemple.fr/%C3%A9t%C3%A9%2F2026"_s);
        row(u"comite-des-fetes.exemple.fr/a:b@c"_s, u"https://comite-des-fetes.exemple.fr/a:b@c"_s);
    }

    void whatBeginsWithAHostOpensAsAPage()
    {
        QFETCH(QString, address);
        QFETCH(QString, page);
        QCOMPARE(openedFor(address), QList<QUrl>(4, QUrl(page)));
    }

    void nothingElseIsEverOpened_data()
    {
        QTest::addColumn<QString>("address");
        for (const QString &address : {u"file:///etc/passwd"_s,
                                       u"FILE:///bin/sh"_s,
                                       u"file:passwd"_s,
                                       u"/etc/passwd"_s,
                                       u"/a/b"_s,
                                       u"//x.fr"_s,
                                       u"//localhost/etc/passwd"_s,
                                       u"etc/passwd"_s,
                                       u"./a.fr"_s,
                                       u"../a.fr"_s,
                                       u".bashrc"_s,
                                       u"~root/a.fr"_s,
                                       u"samedi"_s,
                                       u"aucun"_s,
                                       u"l'été"_s,
                                       u"0233000000"_s,
                                       u"14.30"_s,
                                       u"06.12.34.56.78"_s,
                                       u"a@b.fr"_s,
                                       u"www.exemple.fr@ailleurs.fr"_s,
                                       u"exemple..fr"_s,
                                       u"-a.fr"_s,
                                       u"a-.fr/b"_s,
                                       u"exemple.fr:8080/a"_s,
                                       u"?a.fr"_s,
                                       u"#a.fr"_s,
                                       u"%2Fetc%2Fpasswd.fr"_s,
                                       u"etc%2Fpasswd.fr"_s,
                                       u"javascript:alert(1)"_s,
                                       u"ssh://host"_s,
                                       u"ftp://x.fr"_s,
                                       u"data:text/html,x"_s})
            QTest::newRow(qPrintable(address)) << address;
    }

    void nothingElseIsEverOpened()
    {
        QFETCH(QString, address);
        QCOMPARE(openedFor(address), QList<QUrl>());
    }

    void ofAllThatIsOfferedNothingIsOnThisComputer()
    {
        QFile file(QStringLiteral(AMORVELLE_TEST_DATA) + u"/links.json"_s);
        QVERIFY(file.open(QIODevice::ReadOnly));
        const auto cases =
            QJsonDocument::fromJson(file.readAll()).object().value(u"cases"_s).toArray();
        QVERIFY(!cases.isEmpty());
        for (const auto &vector : cases) {
            const QString text = vector[u"text"].toString();
            const auto opened = addressToOpen(QUrl(text));
            if (!opened)
                continue;
            QVERIFY2(!opened->isLocalFile() && !opened->scheme().isEmpty(), qPrintable(text));
            const bool isPage = opened->scheme().startsWith(u"http"_s);
            QVERIFY2(!isPage || !opened->host().isEmpty(), qPrintable(text));
        }
    }

    void theTooltipShowsTheAddressAsItWasWritten()
    {
        const LinkLabel link(u"Ouvrir le lien"_s, QUrl(u"www.exemple.fr/fete"_s));
        QVERIFY(link.toolTip().contains(u">www.exemple.fr/fete<"_s));
        QCOMPARE(link.accessibleDescription(), u"www.exemple.fr/fete"_s);
    }

    void aHeldKeyOpensOnePage()
    {
        const Desktop desktop;
        LinkLabel link(u"Ouvrir le lien"_s, QUrl(u"https://exemple.fr"_s));
        link.show();
        hold(&link, Qt::Key_Return);
        QCOMPARE(desktop.opened.size(), 1);
        hold(&link, Qt::Key_Space);
        QCOMPARE(desktop.opened.size(), 2);
    }
};

QTEST_MAIN(TestLinkLabel)
#include "test_link_label.moc"
