#include "browse/AccountButton.h"

#include "controls/Accessibility.h"

#include <QTest>

class TestAccountButton : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { installAccessibility(); }
    void theReaderTellsTheAddressThatIsShown();
    void anAddressTooLongToBeSeenIsReadAndShownWhole();
    void theReaderPressesIt();
};

namespace {

QAccessibleInterface *read(QWidget &widget)
{
    return QAccessible::queryAccessibleInterface(&widget);
}

} // namespace

void TestAccountButton::theReaderTellsTheAddressThatIsShown()
{
    AccountButton button;
    QCOMPARE(read(button)->role(), QAccessible::Button);
    QCOMPARE(read(button)->text(QAccessible::Name), QStringLiteral("Compte"));
    QCOMPARE(read(button)->text(QAccessible::Description), QString());
    button.setEmail(QStringLiteral("a@exemple.fr"));
    QCOMPARE(read(button)->text(QAccessible::Name), QStringLiteral("Compte"));
    QCOMPARE(read(button)->text(QAccessible::Description), QStringLiteral("a@exemple.fr"));
    button.setEmail({});
    QCOMPARE(read(button)->text(QAccessible::Description), QString());
}

void TestAccountButton::anAddressTooLongToBeSeenIsReadAndShownWhole()
{
    const QString address = QStringLiteral("une.adresse.vraiment.interminable@exemple.fr");
    AccountButton button;
    button.setEmail(address);
    QVERIFY(button.toolTip().contains(address));
    QCOMPARE(read(button)->text(QAccessible::Description), address);
}

void TestAccountButton::theReaderPressesIt()
{
    AccountButton button;
    int pressed = 0;
    connect(&button, &QAbstractButton::clicked, this, [&pressed] { ++pressed; });
    auto *actions = read(button)->actionInterface();
    QVERIFY(actions->actionNames().contains(QAccessibleActionInterface::pressAction()));
    actions->doAction(QAccessibleActionInterface::pressAction());
    QTRY_COMPARE(pressed, 1);
}

QTEST_MAIN(TestAccountButton)
#include "test_account_button.moc"
