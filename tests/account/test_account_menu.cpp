// The account menu: what it offers in each state, and that pressing tells whoever asked.

#include "account/AccountMenuView.h"
#include "app/ButtonStyles.h"
#include "controls/Popover.h"
#include "controls/TextLabel.h"
#include "look/Accessibility.h"
#include "look/Colors.h"
#include "look/Fonts.h"
#include "support/Picture.h"

#include <QApplication>
#include <QTest>

#include <algorithm>
#include <optional>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

const QString divider = u"-"_s;
const QString logout = u"Se déconnecter"_s;
const QString reconnect = u"Se connecter"_s;
const QString forget = u"Supprimer le compte"_s;

/// What the menu shows from top to bottom: texts, and a dash for a line.
QStringList seen(const QWidget &menu)
{
    auto parts = menu.findChildren<QWidget *>(Qt::FindDirectChildrenOnly);
    std::sort(parts.begin(), parts.end(),
              [](const QWidget *a, const QWidget *b) { return a->y() < b->y(); });
    QStringList texts;
    for (const QWidget *part : std::as_const(parts)) {
        if (!part->isVisible())
            continue;
        if (const auto *label = qobject_cast<const TextLabel *>(part))
            texts.append(label->text());
        else if (const auto *button = qobject_cast<const SecondaryButton *>(part))
            texts.append(button->label());
        else if (part->height() == 1)
            texts.append(divider);
    }
    return texts;
}

SecondaryButton *button(const QWidget &menu, const QString &label)
{
    const auto buttons = menu.findChildren<SecondaryButton *>();
    const auto found =
        std::find_if(buttons.begin(), buttons.end(),
                     [&label](const SecondaryButton *one) { return one->label() == label; });
    return found == buttons.end() ? nullptr : *found;
}

/// The menu as the popover shows it, and what its callbacks were called for.
struct Shown {
    QStringList called;
    AccountMenuView menu;

    Shown(bool isSignedIn, bool hasSavedCredentials, const std::optional<QString> &email)
        : menu({.isSignedIn = isSignedIn,
                .hasSavedCredentials = hasSavedCredentials,
                .email = email,
                .onConnect = [this] { called.append(u"connect"_s); },
                .onLogout = [this] { called.append(u"logout"_s); },
                .onRemove = [this] { called.append(u"remove"_s); }})
    {
        menu.resize(196, menu.sizeHint().height());
        menu.show();
    }
};

} // namespace

class TestAccountMenu : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { installAccessibility(); }
    void init() { QApplication::setPalette(applicationPalette(ColorScheme::Light)); }

    void eachStateOffersWhatCanBeDoneInIt_data()
    {
        QTest::addColumn<bool>("isSignedIn");
        QTest::addColumn<bool>("hasSavedCredentials");
        QTest::addColumn<QStringList>("items");
        QTest::newRow("signed in, remembered")
            << true << true << QStringList{logout, divider, forget};
        QTest::newRow("signed in, not remembered") << true << false << QStringList{logout};
        QTest::newRow("signed out, remembered")
            << false << true << QStringList{reconnect, divider, forget};
        QTest::newRow("signed out, not remembered") << false << false << QStringList{};
    }

    void eachStateOffersWhatCanBeDoneInIt()
    {
        QFETCH(bool, isSignedIn);
        QFETCH(bool, hasSavedCredentials);
        QFETCH(QStringList, items);
        const Shown without(isSignedIn, hasSavedCredentials, {});
        QCOMPARE(seen(without.menu), items);
        const QString email = u"camille@exemple.fr"_s;
        const Shown with(isSignedIn, hasSavedCredentials, email);
        QCOMPARE(seen(with.menu), QStringList{email} + items);
    }

    void anEmptyEmailIsNotShown()
    {
        const Shown it(true, false, QString());
        QCOMPARE(seen(it.menu), QStringList{logout});
        const Shown other(true, false, u""_s);
        QCOMPARE(seen(other.menu), QStringList{logout});
    }

    void anEmailOfBlanksIsShown()
    {
        const Shown it(false, false, u"  "_s);
        QCOMPARE(seen(it.menu), QStringList{u"  "_s});
    }

    void anEmailIsShownLetterByLetter()
    {
        const QString email = u"<b>a</b>&amp;b@exemple.fr"_s;
        const Shown it(false, false, email);
        QCOMPARE(seen(it.menu), QStringList{email});
    }

    void eachButtonCallsItsOwnCallbackOnce()
    {
        Shown in(true, true, {});
        QTest::mouseClick(button(in.menu, logout), Qt::LeftButton);
        QCOMPARE(in.called, QStringList{u"logout"_s});
        QTest::mouseClick(button(in.menu, forget), Qt::LeftButton);
        QCOMPARE(in.called.last(), u"remove"_s);
        Shown out(false, true, {});
        QTest::keyClick(button(out.menu, reconnect), Qt::Key_Space);
        QTest::keyClick(button(out.menu, forget), Qt::Key_Return);
        QCOMPARE(out.called, (QStringList{u"connect"_s, u"remove"_s}));
    }

    void aMenuWithoutCallbacksDoesNotFall()
    {
        AccountMenuView menu({.isSignedIn = true, .hasSavedCredentials = true});
        menu.show();
        QTest::mouseClick(button(menu, logout), Qt::LeftButton);
        QTest::mouseClick(button(menu, forget), Qt::LeftButton);
        QVERIFY(menu.isVisible());
    }

    void forgettingTheAccountIsRedInBothSchemes()
    {
        for (const auto scheme : {ColorScheme::Light, ColorScheme::Dark}) {
            QApplication::setPalette(applicationPalette(scheme));
            for (const bool isSignedIn : {true, false}) {
                Shown it(isSignedIn, true, {});
                QTRY_COMPARE(schemeOf(it.menu.palette()), scheme);
                const QColor expected = red(it.menu.palette());
                QVERIFY(hasColor(picture(*button(it.menu, forget), 2), expected));
                QVERIFY(!hasColor(picture(*button(it.menu, isSignedIn ? logout : reconnect), 2),
                                  expected));
            }
        }
    }

    void theEmailIsQuietAndSemibold()
    {
        for (const auto scheme : {ColorScheme::Light, ColorScheme::Dark}) {
            QApplication::setPalette(applicationPalette(scheme));
            Shown it(true, true, u"camille@exemple.fr"_s);
            auto *email = it.menu.findChild<TextLabel *>();
            QCOMPARE(email->font(), appFont(12, QFont::DemiBold));
            const QImage image = picture(*email, 8);
            COMPARE_COLORS(inkOf(image, image.rect(), windowColor(it.menu.palette())),
                           secondaryText(it.menu.palette()));
        }
    }

    void itemsStandTenApart()
    {
        Shown it(true, true, u"camille@exemple.fr"_s);
        auto parts = it.menu.findChildren<QWidget *>(Qt::FindDirectChildrenOnly);
        parts.removeIf([](const QWidget *part) { return !part->isVisible(); });
        std::ranges::sort(parts, {}, [](const QWidget *part) { return part->y(); });
        QCOMPARE(parts.size(), 4);
        for (qsizetype i = 1; i < parts.size(); ++i)
            QCOMPARE(parts[i]->y() - (parts[i - 1]->y() + parts[i - 1]->height()), 10);
    }

    void buttonsKeepTheirWidthAndStartAtTheLeft()
    {
        Shown it(true, true, u"camille@exemple.fr"_s);
        for (const QString &label : {logout, forget}) {
            QCOMPARE(button(it.menu, label)->width(), button(it.menu, label)->sizeHint().width());
            QCOMPARE(button(it.menu, label)->x(), 0);
        }
    }

    void aVeryLongEmailEndsInAnEllipsisAndIsToldInFull()
    {
        const QString email = u"anne-charlotte.de-la-fontaine"_s.repeated(20) + u"@exemple.fr"_s;
        Shown it(true, true, email);
        const auto *label = it.menu.findChild<TextLabel *>();
        QVERIFY(label->isCut());
        QCOMPARE(label->height(), label->heightForWidth(10'000));
        QVERIFY(label->toolTip().contains(email));
        QCOMPARE(label->accessibleName(), email);
        QCOMPARE(it.menu.width(), 196);
        QCOMPARE(seen(it.menu), (QStringList{email, logout, divider, forget}));
    }

    void inThePopoverAVeryLongEmailMakesNoWiderCard()
    {
        QWidget window;
        window.setGeometry(100, 100, 500, 300);
        QWidget anchor(&window);
        anchor.setGeometry(300, 20, 137, 26);
        window.show();
        Popover popover(&anchor);
        popover.setContent(new AccountMenuView({.email = u"x"_s.repeated(100'000)}));
        popover.open();
        QCOMPARE(popover.card().width(), 220);
    }

    void withNothingToShowThePopoverIsASmallEmptyCard()
    {
        QWidget window;
        window.setGeometry(100, 100, 500, 300);
        QWidget anchor(&window);
        anchor.setGeometry(300, 20, 137, 26);
        window.show();
        Popover popover(&anchor);
        popover.setContent(new AccountMenuView({}));
        popover.open();
        QVERIFY(popover.isVisible());
        QCOMPARE(popover.card().size(), QSize(220, 24));
        QTest::keyClick(&popover, Qt::Key_Escape);
        QVERIFY(!popover.isVisible());
    }
};

QTEST_MAIN(TestAccountMenu)

#include "test_account_menu.moc"
