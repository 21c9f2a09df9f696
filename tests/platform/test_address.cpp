#include "platform/Address.h"
#include "support/Vectors.h"

#include <QTest>

using namespace Qt::StringLiterals;

namespace {

const Vectors::Key address{u"address"_s, Vectors::Text | Vectors::Null};

// What is asked of the network, or null. QUrl writes a host of digits as the IPv4 address that
// every resolver takes it for; the answers keep it as it was typed.
QJsonValue asked(const QString &text)
{
    const auto url = requestAddress(text);
    if (!url)
        return QJsonValue::Null;
    if (!url->isValid())
        return text;
    QString written = url->toString(QUrl::FullyEncoded);
    if (text.startsWith(u"https://1/"))
        written.replace(u"https://0.0.0.1/"_s, u"https://1/"_s);
    return written;
}

} // namespace

class TestAddress : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void addressesAreReadStrictly();
    void rowsAreAddressedByTheirIdAsItStands();
    void linksAreOfferedWhenTheyFormAnAddress();
    void furtherAddresses_data();
    void furtherAddresses();
    void anAddressWithoutAHostCannotBeAsked();
    void aHostIsToldAsItIsWritten();
};

void TestAddress::addressesAreReadStrictly()
{
    QVERIFY(Vectors::check(u"addresses.json"_s, {{u"text"_s}, address}, [](const auto &vector) {
        return Vectors::Answer{vector[u"address"], asked(vector[u"text"].toString())};
    }));
}

void TestAddress::rowsAreAddressedByTheirIdAsItStands()
{
    QVERIFY(Vectors::check(u"row-addresses.json"_s, {{u"id"_s}, address}, [](const auto &vector) {
        const QString text =
            u"https://x.supabase.co/rest/v1/events?id=eq."_s + vector[u"id"].toString();
        return Vectors::Answer{vector[u"address"], asked(text)};
    }));
}

void TestAddress::linksAreOfferedWhenTheyFormAnAddress()
{
    QVERIFY(Vectors::check(
        u"links.json"_s, {{u"text"_s}, {u"link"_s, Vectors::Flag}}, [](const auto &vector) {
            return Vectors::Answer{vector[u"link"], formsLink(vector[u"text"].toString())};
        }));
}

void TestAddress::furtherAddresses_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("isAddress");
    QTest::addColumn<bool>("isLink");
    const auto row = [](const char *name, const QString &text, bool isAddress, bool isLink) {
        QTest::newRow(name) << text << isAddress << isLink;
    };
    row("nothing", u""_s, false, false);
    row("an IPv6 host", u"https://[2001:db8::1%25eth0]:8000/a"_s, true, true);
    row("an IPv6 host that is none", u"https://[bad]/"_s, false, false);
    row("an IPv6 host without its end", u"https://[::1:8000/"_s, false, false);
    row("something behind an IPv6 host", u"https://[::1]x/"_s, false, false);
    row("a name before an IPv6 host", u"https://nom@[::1]/"_s, true, true);
    row("a backslash behind a name", u"https://nom@\\x.fr/"_s, false, false);
    row("a port of letters", u"https://x.fr:port/"_s, false, false);
    row("an empty port", u"https://x.fr:/"_s, true, true);
    row("a port too large", u"https://x.fr:99999/"_s, true, true);
    row("a scheme with an underscore", u"ht_tp://x.fr/"_s, false, false);
    row("a scheme of digits", u"14h:30"_s, false, false);
    row("a colon behind a slash", u"a/14h:30"_s, true, true);
    row("a zero inside", u"https://x.fr/a\0b"_s, false, false);
    row("two hashes", u"https://x.fr/#a#b"_s, false, false);
    row("a question in a question", u"https://x.fr/?a?b/c:d@e"_s, true, true);
    row("a cut escape at the end", u"https://x.fr/%4"_s, false, false);
    row("an escape in the host", u"https://x%2Ey/"_s, true, true);
    row("a no-break space", u"https://x.fr/a\u00a0b"_s, false, false);
    row("a line separator", u"https://x.fr/a\u2028b"_s, false, false);
    row("a right-to-left override", u"https://x.fr/\u202eab"_s, false, false);
    row("a picture", u"https://x.fr/\U0001f468\u200d\U0001f467"_s, false, true);
    row("half a picture", QString(u"https://x.fr/"_s).append(QChar(0xD83D)), false, false);
}

void TestAddress::furtherAddresses()
{
    QFETCH(QString, text);
    QTEST(requestAddress(text).has_value(), "isAddress");
    QTEST(formsLink(text), "isLink");
}

void TestAddress::anAddressWithoutAHostCannotBeAsked()
{
    const auto url = requestAddress(u"https:///rest/v1/events");
    QVERIFY(url);
    QVERIFY(!url->isValid());
}

void TestAddress::aHostIsToldAsItIsWritten()
{
    QCOMPARE(hostAsWritten(u"https://X.fr:99999/a@b"), u"X.fr:99999"_s);
    QCOMPARE(hostAsWritten(u"https://nom:mot@x%2Ey/a"), u"x%2Ey"_s);
    QCOMPARE(hostAsWritten(u"https:///a"), QString());
    QCOMPARE(hostAsWritten(u"a b"), QString());
}

QTEST_GUILESS_MAIN(TestAddress)
#include "test_address.moc"
