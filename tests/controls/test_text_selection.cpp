// Texts that are only there to be read can be taken along.

#include "controls/SymbolLabel.h"
#include "controls/TextLabel.h"
#include "look/Accessibility.h"
#include "look/Colors.h"
#include "look/Fonts.h"
#include "support/Picture.h"

#include <QApplication>
#include <QClipboard>
#include <QMenu>
#include <QTest>

#include <algorithm>
#include <initializer_list>

using namespace Qt::StringLiterals;

namespace {

const QString address = u"contact@exemple.fr"_s;

QString copied()
{
    return QGuiApplication::clipboard()->text();
}

/// A window with a wrapped text and an address below it, both selectable.
struct Page {
    QWidget window;
    TextLabel *text;
    SymbolLabel *mail;
    QWidget *last; ///< for the keyboard to go on to

    explicit Page(const QString &shown = u"Chacun apporte un bol et les voisins des histoires."_s)
        : text(new TextLabel(shown, appFont(13), primaryText, &window))
        , mail(new SymbolLabel(Symbol::Envelope, address, &window))
        , last(new QWidget(&window))
    {
        text->setSelectable();
        mail->setSelectable();
        last->setFocusPolicy(Qt::StrongFocus);
        window.resize(300, 300);
        text->setGeometry(10, 10, 120, text->heightForWidth(120));
        mail->setGeometry(10, 200, 250, mail->sizeHint().height());
        window.show();
        if (!QTest::qWaitForWindowActive(&window))
            qFatal("the page does not come to the front");
        last->setFocus();
        QGuiApplication::clipboard()->setText(u"before"_s);
    }

    static void drag(QWidget *over, QPoint from, QPoint to)
    {
        QTest::mousePress(over, Qt::LeftButton, {}, from);
        QTest::mouseMove(over, (from + to) / 2);
        QTest::mouseMove(over, to);
        QTest::mouseRelease(over, Qt::LeftButton, {}, to);
    }
    static void copy()
    {
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_C, Qt::ControlModifier);
    }
};

} // namespace

class TestTextSelection : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        installAccessibility();
        QApplication::setPalette(applicationPalette(ColorScheme::Light));
    }

    void theMouseSelectsAndTheKeyboardCopies()
    {
        const Page page;
        Page::drag(page.mail, {60, 8}, {249, 8});
        Page::copy();
        QVERIFY(address.endsWith(copied()));
        QVERIFY(!copied().isEmpty() && copied() != address);
        Page::drag(page.mail, {1, 8}, {249, 8});
        Page::copy();
        QCOMPARE(copied(), address);
        QVERIFY(hasColor(picture(*page.mail), accent(page.mail->palette())));
    }

    void aDragReachesOverSeveralLines()
    {
        const Page page;
        QVERIFY(page.text->height() >= 3 * lineHeight(page.text->font()));
        Page::drag(page.text, {0, 2}, {119, page.text->height() - 2});
        Page::copy();
        QCOMPARE(copied(), page.text->text());
        Page::drag(page.text, {119, page.text->height() - 2},
                   {0, page.text->height() - lineHeight(page.text->font()) + 2});
        Page::copy();
        QVERIFY(page.text->text().endsWith(copied()));
        QVERIFY(copied().size() < page.text->text().size());
    }

    void aDoubleClickTakesTheWholeAddress()
    {
        const Page page;
        QTest::mouseDClick(page.mail, Qt::LeftButton, {}, {60, 8});
        Page::copy();
        QCOMPARE(copied(), address);
    }

    void theKeyboardComesToATextAndHasAllOfIt()
    {
        const Page page;
        page.text->setFocus(Qt::TabFocusReason);
        Page::copy();
        QCOMPARE(copied(), page.text->text());
        QTest::keyClick(page.text, Qt::Key_Tab);
        QVERIFY(page.mail->hasFocus());
        QVERIFY(!hasColor(picture(*page.text), accent(page.text->palette())));
        QVERIFY(hasColor(picture(*page.mail), accent(page.mail->palette())));
        Page::copy();
        QCOMPARE(copied(), address);
        QTest::keyClick(page.mail, Qt::Key_Tab);
        QVERIFY(page.last->hasFocus());
    }

    void theKeyboardTakesAPart()
    {
        const Page page;
        page.mail->setFocus(Qt::TabFocusReason);
        for (int i = 0; i < 3; ++i)
            QTest::keyClick(page.mail, Qt::Key_Left, Qt::ShiftModifier);
        Page::copy();
        QCOMPARE(copied(), address.chopped(3));
        QTest::keyClick(page.mail, Qt::Key_Home, Qt::ShiftModifier);
        QTest::keyClick(page.mail, Qt::Key_Right, Qt::ShiftModifier);
        Page::copy();
        QCOMPARE(copied(), address.first(1));
        QTest::keyClick(page.mail, Qt::Key_A, Qt::ControlModifier);
        Page::copy();
        QCOMPARE(copied(), address);

        page.text->setFocus(Qt::TabFocusReason);
        QTest::keyClick(page.text, Qt::Key_Up, Qt::ShiftModifier);
        Page::copy();
        QVERIFY(page.text->text().startsWith(copied()));
        QVERIFY(copied().size() < page.text->text().size());
    }

    void otherKeysAreLeftToTheSheet()
    {
        const Page page;
        page.mail->setFocus(Qt::TabFocusReason);
        for (const auto key : {Qt::Key_Down, Qt::Key_Up, Qt::Key_PageDown, Qt::Key_Home,
                               Qt::Key_End, Qt::Key_Escape, Qt::Key_Return}) {
            QKeyEvent event(QEvent::KeyPress, key, Qt::NoModifier);
            QCoreApplication::sendEvent(page.mail, &event);
            QVERIFY(!event.isAccepted());
        }
    }

    void theRightButtonOffersToCopy()
    {
        const Page page;
        const QPoint at(60, 8);
        QContextMenuEvent event(QContextMenuEvent::Mouse, at, page.mail->mapToGlobal(at));
        QCoreApplication::sendEvent(page.mail, &event);
        auto *menu = qobject_cast<QMenu *>(QApplication::activePopupWidget());
        QVERIFY(menu);
        menu->actions().first()->trigger();
        QCOMPARE(copied(), address);
        menu->close();
    }

    void whatIsCopiedIsTheTextLetterByLetter_data()
    {
        QTest::addColumn<QString>("text");
        QTest::newRow("markup") << u"<b>x</b> &amp; <i>y</i>"_s;
        QTest::newRow("line breaks") << u"a\nb\r\nc\u2028d\n\ne"_s;
        QTest::newRow("blanks") << u"14\u00a0h\u202f30  -  18 h "_s;
        QTest::newRow("pictures") << u"\U0001f468\u200d\U0001f467 fête"_s;
    }

    void whatIsCopiedIsTheTextLetterByLetter()
    {
        QFETCH(QString, text);
        const Page page(text);
        page.text->setFocus(Qt::TabFocusReason);
        Page::copy();
        QCOMPARE(copied(), text);
    }

    void aTextThatIsCutIsCopiedWhole()
    {
        const Page page;
        page.mail->resize(80, page.mail->height());
        QVERIFY(page.mail->isCut());
        Page::drag(page.mail, {30, 8}, {60, 8});
        QVERIFY(hasColor(picture(*page.mail), accent(page.mail->palette())));
        Page::copy();
        QCOMPARE(copied(), address);
    }

    void aTextBeyondAnyPageIsCopiedWhole()
    {
        const QString endless = u"une histoire sans fin "_s.repeated(5'000);
        const Page page(endless);
        page.text->setFocus(Qt::TabFocusReason);
        Page::copy();
        QCOMPARE(copied(), endless);
    }

    void aClickSelectsNothing()
    {
        const Page page;
        QTest::mouseClick(page.mail, Qt::LeftButton, {}, {60, 8});
        QVERIFY(page.mail->hasFocus());
        Page::copy();
        QCOMPARE(copied(), u"before"_s);
        QVERIFY(!hasColor(picture(*page.mail), accent(page.mail->palette())));
    }

    void forTheReaderItStaysALabel()
    {
        const Page page;
        for (QWidget *label : std::initializer_list<QWidget *>{page.text, page.mail}) {
            const auto *reader = QAccessible::queryAccessibleInterface(label);
            QCOMPARE(reader->role(), QAccessible::StaticText);
            QCOMPARE(reader->text(QAccessible::Name), label->accessibleName());
            QVERIFY(reader->state().focusable);
        }
        QCOMPARE(page.mail->accessibleName(), address);
    }

    void aLabelThatIsNotSelectableTakesNoFocus()
    {
        const TextLabel text(u"x"_s, appFont(13));
        const SymbolLabel symbol(Symbol::Clock, u"x"_s);
        QCOMPARE(text.focusPolicy(), Qt::NoFocus);
        QCOMPARE(symbol.focusPolicy(), Qt::NoFocus);
    }
};

QTEST_MAIN(TestTextSelection)
#include "test_text_selection.moc"
