// The one-line entry field, as a person types in it, and where popups find room.

#include "controls/PopupPlacement.h"
#include "controls/TextField.h"
#include "look/Colors.h"

#include <QApplication>
#include <QSignalSpy>
#include <QTest>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

namespace {

/// Counts the keys that a form gets because its field did not take them.
class Form : public QWidget {
public:
    Form()
    {
        auto *column = new QVBoxLayout(this);
        column->addWidget(first);
        column->addWidget(second);
        resize(300, 120);
        show();
        first->setFocus(Qt::OtherFocusReason);
    }

    TextField *first = new TextField(u"Ex: Salle & <b>Vaudrelle</b>"_s, this);
    TextField *second = new TextField(u"Email"_s, this);
    int keys = 0;

protected:
    void keyPressEvent(QKeyEvent *) override { ++keys; }
};

} // namespace

class TestTextField : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { QApplication::setPalette(applicationPalette(ColorScheme::Light)); }

    void returnDoesNothing()
    {
        Form form;
        QVERIFY(QTest::qWaitForWindowActive(&form));
        QTest::keyClicks(form.first, u"Concert"_s);
        QTest::keyClick(form.first, Qt::Key_Return);
        QTest::keyClick(form.first, Qt::Key_Enter);
        QCOMPARE(form.first->text(), u"Concert"_s);
        QVERIFY(form.first->hasFocus());
        QCOMPARE(form.keys, 0);
    }

    void escapeIsLeftToTheForm()
    {
        Form form;
        QVERIFY(QTest::qWaitForWindowActive(&form));
        QTest::keyClick(form.first, Qt::Key_Escape);
        QCOMPARE(form.keys, 1);
    }

    void tabGoesOn()
    {
        Form form;
        QVERIFY(QTest::qWaitForWindowActive(&form));
        QTest::keyClick(form.first, Qt::Key_Tab);
        QVERIFY(form.second->hasFocus());
    }

    void fillingItInCodeIsNotEditing()
    {
        Form form;
        const QSignalSpy edited(form.first, &QLineEdit::textEdited);
        form.first->setText(u"Atelier"_s);
        QCOMPARE(edited.count(), 0);
        QTest::keyClicks(form.first, u"s"_s);
        QCOMPARE(edited.count(), 1);
    }

    void whatWasTypedCanBeUndone()
    {
        Form form;
        QVERIFY(QTest::qWaitForWindowActive(&form));
        QTest::keyClicks(form.first, u"abc"_s);
        QTest::keyClick(form.first, Qt::Key_Z, Qt::ControlModifier);
        QCOMPARE(form.first->text(), QString());
    }

    void theReaderHearsThePromptUntilItIsGivenAName()
    {
        Form form;
        QCOMPARE(form.second->accessibleName(), u"Email"_s);
    }

    void theFillFollowsTheSchemeAndTheRingTheFocus()
    {
        Form form;
        QVERIFY(QTest::qWaitForWindowActive(&form));
        const auto at = [&form](const QWidget *field, QPoint point) {
            return form.grab().toImage().pixelColor(field->mapTo(&form, point));
        };
        const int middle = form.first->height() / 2;
        const QPoint fill(form.first->width() - 10, middle);
        QCOMPARE(at(form.second, fill), surfaceColor(form.palette()));
        QCOMPARE(at(form.first, {0, middle}), accentInk(form.palette()));
        QVERIFY(at(form.second, {0, middle}) != accentInk(form.palette()));
        form.second->setFocus(Qt::MouseFocusReason);
        QCOMPARE(at(form.second, {0, middle}), accentInk(form.palette()));

        QApplication::setPalette(applicationPalette(ColorScheme::Dark));
        QTRY_COMPARE(at(form.first, fill), surfaceColor(applicationPalette(ColorScheme::Dark)));
        QApplication::setPalette(applicationPalette(ColorScheme::Light));
    }

    void aPopupFindsRoom_data()
    {
        QTest::addColumn<QRect>("anchor");
        QTest::addColumn<bool>("alignsRight");
        QTest::addColumn<QRect>("place");

        // The screen is 1000 x 700, the popup 220 x 130, the gap 6.
        QTest::newRow("below, right edges in line")
            << QRect(600, 50, 144, 26) << true << QRect(524, 82, 220, 130);
        QTest::newRow("below, left edges in line")
            << QRect(600, 50, 144, 26) << false << QRect(600, 82, 220, 130);
        QTest::newRow("above where there is no room below")
            << QRect(600, 600, 144, 26) << true << QRect(524, 464, 220, 130);
        QTest::newRow("exactly enough room below")
            << QRect(600, 538, 144, 26) << true << QRect(524, 570, 220, 130);
        QTest::newRow("not over the left end")
            << QRect(10, 50, 26, 26) << true << QRect(0, 82, 220, 130);
        QTest::newRow("not over the right end")
            << QRect(900, 50, 90, 26) << false << QRect(780, 82, 220, 130);
        QTest::newRow("an anchor off the screen")
            << QRect(600, 900, 144, 26) << true << QRect(524, 570, 220, 130);
    }

    void aPopupFindsRoom()
    {
        QFETCH(QRect, anchor);
        QFETCH(bool, alignsRight);
        const auto alignment = alignsRight ? PopupAlignment::Right : PopupAlignment::Left;
        QTEST(popupPlace(anchor, {220, 130}, alignment, 6, {0, 0, 1000, 700}), "place");
    }

    void aPopupTallerThanTheScreenShowsItsTop()
    {
        const QRect place =
            popupPlace({10, 300, 20, 20}, {220, 900}, PopupAlignment::Left, 6, {0, 0, 1000, 700});
        QCOMPARE(place, QRect(10, 0, 220, 900));
    }
};

QTEST_MAIN(TestTextField)

#include "test_text_field.moc"
