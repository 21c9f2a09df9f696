#include "browse/AccountButton.h"

#include "look/Accessibility.h"
#include "look/Colors.h"
#include "support/Announcements.h"
#include "support/Picture.h"
#include "support/Typing.h"

#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;

class TestAccountButton : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { installAccessibility(); }
    void theReaderTellsTheAddressThatIsShown();
    void anAddressTooLongToBeSeenIsReadAndShownWhole();
    void theReaderPressesIt();
    void aHeldKeyPressesOnce();
    void itsGroundStaysCalmEnoughToReadWhileItsMenuIsOpen();
};

void TestAccountButton::theReaderTellsTheAddressThatIsShown()
{
    AccountButton button;
    QCOMPARE(read(&button)->role(), QAccessible::Button);
    QCOMPARE(read(&button)->text(QAccessible::Name), u"Compte"_s);
    QCOMPARE(read(&button)->text(QAccessible::Description), QString());
    button.setEmail(u"a@exemple.fr"_s);
    QCOMPARE(read(&button)->text(QAccessible::Name), u"Compte"_s);
    QCOMPARE(read(&button)->text(QAccessible::Description), u"a@exemple.fr"_s);
    button.setEmail({});
    QCOMPARE(read(&button)->text(QAccessible::Description), QString());
}

void TestAccountButton::anAddressTooLongToBeSeenIsReadAndShownWhole()
{
    const QString address = u"une.adresse.vraiment.interminable@exemple.fr"_s;
    AccountButton button;
    button.setEmail(address);
    QVERIFY(button.toolTip().contains(address));
    QCOMPARE(read(&button)->text(QAccessible::Description), address);
}

void TestAccountButton::theReaderPressesIt()
{
    AccountButton button;
    int pressed = 0;
    connect(&button, &QAbstractButton::clicked, this, [&pressed] { ++pressed; });
    auto *actions = read(&button)->actionInterface();
    QVERIFY(actions->actionNames().contains(QAccessibleActionInterface::pressAction()));
    actions->doAction(QAccessibleActionInterface::pressAction());
    QTRY_COMPARE(pressed, 1);
}

void TestAccountButton::aHeldKeyPressesOnce()
{
    AccountButton button;
    button.show();
    QSignalSpy clicked(&button, &QAbstractButton::clicked);
    hold(&button, Qt::Key_Return);
    QCOMPARE(clicked.count(), 1);
    hold(&button, Qt::Key_Space);
    QCOMPARE(clicked.count(), 2);
}

void TestAccountButton::itsGroundStaysCalmEnoughToReadWhileItsMenuIsOpen()
{
    for (const auto scheme : {ColorScheme::Light, ColorScheme::Dark}) {
        QApplication::setPalette(applicationPalette(scheme));
        AccountButton button;
        button.setEmail(u"a@exemple.fr"_s);
        button.resize(button.sizeHint());
        const QPalette palette = QApplication::palette();
        const QPoint ground(button.width() / 2, 1);
        const QColor closed =
            blended(accountFill(palette), blended(accountLift(palette), windowColor(palette)));
        COMPARE_COLORS(picture(button).pixelColor(ground), closed);
        button.setOpen(true);
        COMPARE_COLORS(picture(button).pixelColor(ground),
                       blended(accountOpen(palette), windowColor(palette)));
    }
}

QTEST_MAIN(TestAccountButton)
#include "test_account_button.moc"
