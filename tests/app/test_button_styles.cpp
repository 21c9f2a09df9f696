#include "app/ButtonStyles.h"
#include "look/Colors.h"
#include "look/FocusRing.h"
#include "look/Fonts.h"
#include "support/LabelledHeight.h"
#include "support/Picture.h"
#include "support/Typing.h"

#include <QAccessible>
#include <QApplication>
#include <QDialog>
#include <QLineEdit>
#include <QSignalSpy>
#include <QTest>
#include <QVBoxLayout>
#include <QtMath>

#include <initializer_list>

using namespace Qt::StringLiterals;

Q_DECLARE_METATYPE(ColorScheme)

namespace {

/// The colour of a button's fill, clear of its label, at 1 and 2 device pixels each.
QColor fillOf(StyledButton &button, int ratio = 1)
{
    return picture(button, ratio).pixelColor(6 * ratio, 14 * ratio);
}

QColor over(std::initializer_list<QColor> layers, QColor ground)
{
    for (const auto &layer : layers)
        ground = blended(layer, ground);
    return ground;
}

template <typename Button>
struct Shown {
    QWidget window;
    Button *button;

    explicit Shown(const QString &text = u"Se connecter"_s)
        : button(new Button(text, &window))
    {
        button->move(10, 10);
        button->resize(button->sizeHint());
        window.resize(300, 80);
        window.show();
        window.activateWindow();
    }
};

} // namespace

class TestButtonStyles : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase_data()
    {
        QTest::addColumn<ColorScheme>("scheme");
        QTest::newRow("light") << ColorScheme::Light;
        QTest::newRow("dark") << ColorScheme::Dark;
    }

    void init()
    {
        QFETCH_GLOBAL(ColorScheme, scheme);
        m_palette = applicationPalette(scheme);
        QApplication::setPalette(m_palette);
    }

    void theLabelHasItsPaddings()
    {
        const QString text = u"Ajouter un compte"_s;
        const auto textWidth = [&](QFont::Weight weight) {
            return qCeil(QFontMetricsF(appFont(13, weight)).horizontalAdvance(text));
        };
        QCOMPARE(SecondaryButton(text).sizeHint().width(), textWidth(QFont::Normal) + 24);
        QCOMPARE(PrimaryButton(text).sizeHint().width(), textWidth(QFont::Medium) + 24);
        QCOMPARE(PrimaryButton(text).sizeHint().height(), labelledHeight());
        QCOMPARE(SecondaryButton(text).sizeHint().height(), labelledHeight());

        PrimaryButton withSymbol(text);
        withSymbol.setSymbol(Symbol::Plus);
        QCOMPARE(withSymbol.sizeHint(), PrimaryButton(text).sizeHint() + QSize(14 + 5, 0));
    }

    void thePaddingsStayClear()
    {
        Shown<PrimaryButton> it(u"▊▊▊"_s);
        for (const int ratio : {1, 2}) {
            const QImage image = picture(*it.button, ratio);
            const QColor fill = accent(m_palette);
            for (int x = 6 * ratio; x < 11 * ratio; ++x)
                COMPARE_COLORS(image.pixelColor(x, 14 * ratio), fill);
            for (int x = 10; x < it.button->width() - 10; ++x)
                COMPARE_COLORS(image.pixelColor(x * ratio, 2 * ratio), fill);
        }
    }

    void aPrimaryButtonIsFilledAndLightensWhileItIsHeld()
    {
        Shown<PrimaryButton> it;
        const QColor ground = windowColor(m_palette);
        QColor pressed = accent(m_palette);
        pressed.setAlphaF(0.85F);
        COMPARE_COLORS(fillOf(*it.button), accent(m_palette));
        QTest::mousePress(it.button, Qt::LeftButton);
        COMPARE_COLORS(fillOf(*it.button), over({pressed}, ground));
        QTest::mouseRelease(it.button, Qt::LeftButton);
        COMPARE_COLORS(fillOf(*it.button), accent(m_palette));
        QVERIFY(hasColor(picture(*it.button, 4), Qt::white));
    }

    void aSecondaryButtonDarkensWhileItIsHeldAndKeepsItsLine()
    {
        QFETCH_GLOBAL(ColorScheme, scheme);
        Shown<SecondaryButton> it;
        const bool dark = scheme == ColorScheme::Dark;
        const QColor base =
            over({QColor(255, 255, 255, dark ? qRound(0.12 * 255) : 0)}, windowColor(m_palette));
        const auto black = [](qreal part) { return QColor(0, 0, 0, qRound(part * 255)); };
        const auto line = [&] { return picture(*it.button).pixelColor(0, 14); };
        COMPARE_COLORS(fillOf(*it.button), QColor(dark ? 0x424245 : 0xE3E3E5));
        COMPARE_COLORS(fillOf(*it.button), over({black(0.06)}, base));
        COMPARE_COLORS(line(), over({black(0.06), black(0.08)}, base));
        QTest::mousePress(it.button, Qt::LeftButton);
        COMPARE_COLORS(fillOf(*it.button), over({black(0.12)}, base));
        COMPARE_COLORS(line(), over({black(0.12), black(0.08)}, base));
        QTest::mouseRelease(it.button, Qt::LeftButton);
        COMPARE_COLORS(fillOf(*it.button), over({black(0.06)}, base));
        QVERIFY(hasColor(picture(*it.button, 4), primaryText(m_palette)));
    }

    void theCornersAreRound()
    {
        Shown<PrimaryButton> primary;
        Shown<SecondaryButton> secondary;
        for (StyledButton *button : {static_cast<StyledButton *>(primary.button),
                                     static_cast<StyledButton *>(secondary.button)}) {
            const QImage image = picture(*button, 2);
            COMPARE_COLORS(image.pixelColor(0, 0), windowColor(m_palette));
            COMPARE_COLORS(image.pixelColor(2, 2), windowColor(m_palette));
            QVERIFY(!alike(image.pixelColor(5, 5), windowColor(m_palette)));
        }
    }

    void aDisabledButtonFadesAsAWhole()
    {
        Shown<PrimaryButton> it;
        it.button->setEnabled(false);
        QColor faded = accent(m_palette);
        faded.setAlphaF(0.45F);
        COMPARE_COLORS(fillOf(*it.button), over({faded}, windowColor(m_palette)));
        COMPARE_COLORS(fillOf(*it.button, 2), over({faded}, windowColor(m_palette)));
        const QColor label =
            over({QColor(255, 255, 255, qRound(0.45 * 255))}, windowColor(m_palette));
        QVERIFY(hasColor(picture(*it.button, 4), label));
    }

    void aDestructiveButtonIsWrittenInRed()
    {
        Shown<SecondaryButton> it(u"Supprimer"_s);
        QVERIFY(!hasColor(picture(*it.button, 4), red(m_palette)));
        it.button->setDestructive(true);
        QVERIFY(hasColor(picture(*it.button, 4), red(m_palette)));
    }

    void aRingStandsClearOfAButtonReachedByKeyboard()
    {
        Shown<SecondaryButton> it;
        QTRY_VERIFY(it.window.isActiveWindow());
        it.window.setFocus();
        const QPoint above(it.button->geometry().center().x(), 10);
        const auto at = [&](int up) {
            return picture(it.window).pixelColor(above - QPoint(0, up));
        };
        QTest::mouseClick(it.button, Qt::LeftButton);
        COMPARE_COLORS(at(2), windowColor(m_palette));
        it.window.setFocus();
        it.button->setFocus(Qt::TabFocusReason);
        COMPARE_COLORS(at(1), windowColor(m_palette));
        COMPARE_COLORS(at(2), accentInk(m_palette));
        COMPARE_COLORS(at(3), accentInk(m_palette));
        COMPARE_COLORS(at(4), windowColor(m_palette));
    }

    void theLabelIsShownAndReadLetterByLetter()
    {
        SecondaryButton button(u"Fish && <b>chips</b> & co"_s);
        QCOMPARE(button.label(), u"Fish && <b>chips</b> & co"_s);
        auto *interface = QAccessible::queryAccessibleInterface(&button);
        QCOMPARE(interface->role(), QAccessible::Button);
        QCOMPARE(interface->text(QAccessible::Name), button.label());
        QVERIFY(button.shortcut().isEmpty());
        QVERIFY(button.sizeHint().width()
                > SecondaryButton(u"Fish chips co"_s).sizeHint().width() + 40);
    }

    void aLabelWithoutRoomIsCutAndWholeInTheTooltip()
    {
        PrimaryButton button(u"Ajouter un événement"_s);
        button.setFixedWidth(80);
        button.show();
        QVERIFY(button.toolTip().contains(button.label()));
        QCOMPARE(button.accessibleDescription(), button.label());
        button.setFixedWidth(400);
        QVERIFY(button.toolTip().isEmpty());
        QVERIFY(button.accessibleDescription().isEmpty());
    }

    void aHeldKeyPressesOnce()
    {
        const Shown<PrimaryButton> it;
        QSignalSpy clicked(it.button, &QAbstractButton::clicked);
        hold(it.button, Qt::Key_Return);
        QCOMPARE(clicked.count(), 1);
        hold(it.button, Qt::Key_Space);
        QCOMPARE(clicked.count(), 2);
    }

    void returnInAFieldPressesNoButtonAndReturnOnAButtonPressesIt()
    {
        QDialog dialog;
        auto *column = new QVBoxLayout(&dialog);
        auto *field = new QLineEdit;
        auto *button = new SecondaryButton(u"Annuler"_s);
        column->addWidget(field);
        column->addWidget(button);
        dialog.show();
        dialog.activateWindow();
        QTRY_VERIFY(dialog.isActiveWindow());
        QSignalSpy clicked(button, &QPushButton::clicked);
        field->setFocus();
        QTest::keyClick(field, Qt::Key_Return);
        QCOMPARE(clicked.count(), 0);
        button->setFocus();
        QTest::keyClick(button, Qt::Key_Return);
        QTest::keyClick(button, Qt::Key_Enter);
        QTest::keyClick(button, Qt::Key_Space);
        QCOMPARE(clicked.count(), 3);
    }

private:
    QPalette m_palette;
};

QTEST_MAIN(TestButtonStyles)
#include "test_button_styles.moc"
