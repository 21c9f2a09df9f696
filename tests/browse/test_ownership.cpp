#include "browse/Ownership.h"

#include <QTest>

#include <optional>

using namespace Qt::StringLiterals;

using OptionalText = std::optional<QString>;

class TestOwnership : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void onlyTheOwnerMayChangeAnEvent_data();
    void onlyTheOwnerMayChangeAnEvent();
};

void TestOwnership::onlyTheOwnerMayChangeAnEvent_data()
{
    QTest::addColumn<OptionalText>("owner");
    QTest::addColumn<OptionalText>("user");
    QTest::addColumn<bool>("mine");

    const OptionalText none;
    const OptionalText a = u"a"_s;
    const OptionalText b = u"b"_s;
    const OptionalText composed = u"\u00e9"_s;
    const OptionalText decomposed = u"e\u0301"_s;
    QTest::newRow("the same account") << a << a << true;
    QTest::newRow("another account") << a << b << false;
    QTest::newRow("another case of letters") << a << OptionalText(u"A"_s) << false;
    QTest::newRow("owned, nobody signed in") << a << none << false;
    QTest::newRow("without owner, somebody signed in") << none << a << false;
    QTest::newRow("without owner, nobody signed in") << none << none << true;
    QTest::newRow("an empty owner is an owner") << OptionalText(QString()) << none << false;
    QTest::newRow("the same letters spelled otherwise") << composed << decomposed << true;
}

void TestOwnership::onlyTheOwnerMayChangeAnEvent()
{
    QFETCH(OptionalText, owner);
    QFETCH(OptionalText, user);
    QFETCH(bool, mine);
    Event event;
    event.user_id = owner;
    QCOMPARE(isOwner(event, user), mine);
}

QTEST_GUILESS_MAIN(TestOwnership)
#include "test_ownership.moc"
