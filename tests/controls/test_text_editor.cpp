#include "controls/ShownText.h"
#include "controls/TextEditor.h"
#include "look/Colors.h"
#include "look/FocusRing.h"
#include "support/Picture.h"
#include "support/Typing.h"

#include <QApplication>
#include <QClipboard>
#include <QInputMethodEvent>
#include <QMimeData>
#include <QScrollBar>
#include <QSignalSpy>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

namespace {

/// An editor among other fields, in a window in front.
struct Scene {
    QWidget window;
    QWidget *before = new QWidget(&window);
    TextEditor *editor = new TextEditor(u"Ex: Pour les enfants"_s, &window);
    QWidget *after = new QWidget(&window);

    explicit Scene(const QString &text = {})
    {
        auto *column = new QVBoxLayout(&window);
        for (QWidget *field : {before, static_cast<QWidget *>(editor), after}) {
            field->setFocusPolicy(Qt::StrongFocus);
            column->addWidget(field);
        }
        editor->setWholeText(text);
        window.resize(460, 300);
        window.show();
        window.activateWindow();
        if (!QTest::qWaitForWindowActive(&window))
            qFatal("the window does not come to the front");
    }

    void focus() const
    {
        editor->setFocus(Qt::TabFocusReason);
        editor->moveCursor(QTextCursor::End);
    }
};

QColor colorAt(Scene &scene, QPoint inEditor)
{
    return picture(scene.window).pixelColor(scene.editor->mapTo(&scene.window, inEditor));
}

bool hasInk(Scene &scene, const QRect &inEditor)
{
    const QRect area(scene.editor->mapTo(&scene.window, inEditor.topLeft()), inEditor.size());
    const QImage image = picture(scene.window);
    const QColor fill = surfaceColor(scene.editor->palette());
    for (int y = area.top(); y <= area.bottom(); ++y) {
        for (int x = area.left(); x <= area.right(); ++x) {
            if (!alike(image.pixelColor(x, y), fill))
                return true;
        }
    }
    return false;
}

} // namespace

class TestTextEditor : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void aChangeMadeToWhatIsShownIsMadeToTheWhole_data();
    void aChangeMadeToWhatIsShownIsMadeToTheWhole();
    void theMarkOfACutTextStandsForTheRest();
    void aCutNeverSplitsACharacter();

    void whatIsTypedIsKeptLetterByLetter();
    void anUntouchedTextIsKeptLetterByLetter();
    void aTouchedTextKeepsWhatWasNotTouched();
    void undoingEverythingBringsBackTheVeryText();
    void returnAndShiftReturnBothBeginALine();
    void tabLeavesTheFieldBothWays();
    void copyAndPasteKeepNoBreakSpaces();
    void pastedMarkupIsPlainText();
    void anEnormousTextIsShownInPartAndKeptWhole();
    void anEnormousTextIsCopiedWhole();
    void anEnormousTextIsReplacedWhole();
    void anEnormousPasteIsKeptWholeAndCanBeUndone();
    void theCallerFillingTheFieldIsNoEdit();
    void thePlaceholderShowsUntilSomethingIsTyped();
    void thePlaceholderGivesWayToAComposition();
    void escapeGivesUpACompositionFirst();
    void theFieldIsFilledWithinItsLine();
    void theFocusShowsARingInBothSchemes();
    void theFieldIsEightyHighAndScrolls();
};

void TestTextEditor::aChangeMadeToWhatIsShownIsMadeToTheWhole_data()
{
    QTest::addColumn<QString>("whole");
    QTest::addColumn<QString>("now");
    QTest::addColumn<QString>("after");
    QTest::newRow("nothing") << u"a\r\nb"_s << u"a\nb"_s << u"a\r\nb"_s;
    QTest::newRow("before a line break") << u"a\r\nb"_s << u"ax\nb"_s << u"ax\r\nb"_s;
    QTest::newRow("after a line break") << u"a\r\nb"_s << u"a\nxb"_s << u"a\r\nxb"_s;
    QTest::newRow("at the end") << u"a\u2029b"_s << u"a\nbx"_s << u"a\u2029bx"_s;
    QTest::newRow("a line break removed") << u"a\r\nb\rc"_s << u"ab\nc"_s << u"ab\rc"_s;
    QTest::newRow("everything replaced") << u"a\r\nb"_s << u"x"_s << u"x"_s;
    QTest::newRow("everything removed") << u"a\r\nb"_s << u""_s << u""_s;
    QTest::newRow("to an empty text") << u""_s << u"x"_s << u"x"_s;
    QTest::newRow("one of equal letters removed") << u"aaa"_s << u"aa"_s << u"aa"_s;
    QTest::newRow("half of a character the same")
        << u"\U0001f600"_s << u"\U0001f601"_s << u"\U0001f601"_s;
}

void TestTextEditor::aChangeMadeToWhatIsShownIsMadeToTheWhole()
{
    QFETCH(QString, whole);
    QFETCH(QString, now);
    QTEST(ShownText(whole).wholeAfter(now), "after");
}

void TestTextEditor::theMarkOfACutTextStandsForTheRest()
{
    const ShownText text(u"abcdef"_s, 3);
    const QChar mark = text.shown().back();
    QCOMPARE(text.shown(), u"abc"_s + mark);
    QCOMPARE(text.wholeAfter(u"abc"_s + mark), u"abcdef"_s);
    QCOMPARE(text.wholeAfter(u"Xbc"_s + mark), u"Xbcdef"_s);
    QCOMPARE(text.wholeAfter(u"abcX"_s + mark), u"abcXdef"_s);
    QCOMPARE(text.wholeAfter(u"abc"_s + mark + u'X'), u"abcdefX"_s);
    QCOMPARE(text.wholeAfter(u"Xabc"_s + mark + u'X'), u"XabcdefX"_s);
    QCOMPARE(text.wholeAfter(u"abc"_s), u"abc"_s);
    QCOMPARE(text.wholeAfter(u"a"_s), u"a"_s);
    QCOMPARE(text.wholeAfter(u""_s), u""_s);
    // An ellipsis of the text's own is no mark.
    QCOMPARE(text.wholeAfter(u"Xabc\u2026X"_s), u"Xabc\u2026X"_s);
    QVERIFY(ShownText(u"abc"_s + mark + u"defg"_s, 4).shown().back() != mark);
    QCOMPARE(ShownText(u"abc"_s + mark).wholeAfter(u"abc"_s), u"abc"_s);
}

void TestTextEditor::aCutNeverSplitsACharacter()
{
    QCOMPARE(ShownText(u"ab\U0001f600c"_s, 3).shown(), u"ab\u22ef"_s);
    const ShownText text(u"ab\r\ncd"_s, 3);
    QCOMPARE(text.wholeAfter(text.shown() + u'x'), u"ab\r\ncdx"_s);
    QCOMPARE(text.wholeAfter(u'x' + text.shown()), u"xab\r\ncd"_s);
}

void TestTextEditor::whatIsTypedIsKeptLetterByLetter()
{
    Scene it;
    it.focus();
    type(it.editor, u"a\u00a0b\u202fc"_s);
    QTest::keyClick(it.editor, Qt::Key_Return);
    type(it.editor, u"d "_s);
    QCOMPARE(it.editor->wholeText(), u"a\u00a0b\u202fc\nd "_s);
}

void TestTextEditor::anUntouchedTextIsKeptLetterByLetter()
{
    const QString text = u"a\u00a0b\r\nc\rd\u2028e\u2029f\u0085g\th\u200b\ufeff"_s;
    const Scene it(text);
    QCOMPARE(it.editor->wholeText(), text);
}

void TestTextEditor::aTouchedTextKeepsWhatWasNotTouched()
{
    const Scene it(u"a\u00a0b\r\nc\rd\u2028e\u2029f"_s);
    it.focus();
    type(it.editor, u"x"_s);
    it.editor->moveCursor(QTextCursor::Start);
    type(it.editor, u"y"_s);
    // What lies between two changes counts as changed: its line breaks are the field's.
    QCOMPARE(it.editor->wholeText(), u"ya\u00a0b\nc\nd\u2028e\nfx"_s);
    QTest::keyClick(it.editor, Qt::Key_Backspace);
    QCOMPARE(it.editor->wholeText(), u"a\u00a0b\r\nc\rd\u2028e\u2029fx"_s);
}

void TestTextEditor::undoingEverythingBringsBackTheVeryText()
{
    const QString text = u"a\r\nb"_s;
    const Scene it(text);
    it.focus();
    type(it.editor, u"xyz"_s);
    QCOMPARE(it.editor->wholeText(), u"a\r\nbxyz"_s);
    QTest::keySequence(it.editor, QKeySequence::SelectAll);
    QTest::keyClick(it.editor, Qt::Key_Delete);
    QCOMPARE(it.editor->wholeText(), QString());
    for (int i = 0; i < 10; ++i)
        QTest::keySequence(it.editor, QKeySequence::Undo);
    QCOMPARE(it.editor->wholeText(), text);
}

void TestTextEditor::returnAndShiftReturnBothBeginALine()
{
    const Scene it;
    it.focus();
    type(it.editor, u"a"_s);
    QTest::keyClick(it.editor, Qt::Key_Return);
    type(it.editor, u"b"_s);
    QTest::keyClick(it.editor, Qt::Key_Return, Qt::ShiftModifier);
    type(it.editor, u"c"_s);
    QCOMPARE(it.editor->wholeText(), u"a\nb\nc"_s);
}

void TestTextEditor::tabLeavesTheFieldBothWays()
{
    const Scene it(u"a"_s);
    it.focus();
    QTest::keyClick(it.editor, Qt::Key_Tab);
    QVERIFY(it.after->hasFocus());
    it.focus();
    QTest::keyClick(it.editor, Qt::Key_Backtab, Qt::ShiftModifier);
    QVERIFY(it.before->hasFocus());
    QCOMPARE(it.editor->wholeText(), u"a"_s);
}

void TestTextEditor::copyAndPasteKeepNoBreakSpaces()
{
    const Scene it(u"a\u00a0b\nc"_s);
    it.focus();
    QTest::keySequence(it.editor, QKeySequence::SelectAll);
    QTest::keySequence(it.editor, QKeySequence::Copy);
    QCOMPARE(QApplication::clipboard()->text(), u"a\u00a0b\nc"_s);
    it.editor->moveCursor(QTextCursor::End);
    QTest::keySequence(it.editor, QKeySequence::Paste);
    QCOMPARE(it.editor->wholeText(), u"a\u00a0b\nca\u00a0b\nc"_s);
}

void TestTextEditor::pastedMarkupIsPlainText()
{
    auto *both = new QMimeData;
    both->setHtml(u"<b>gras</b>"_s);
    both->setText(u"<b>gras</b>"_s);
    QApplication::clipboard()->setMimeData(both);
    const Scene it;
    it.focus();
    QTest::keySequence(it.editor, QKeySequence::Paste);
    QCOMPARE(it.editor->wholeText(), u"<b>gras</b>"_s);
    QCOMPARE(it.editor->document()->toPlainText(), u"<b>gras</b>"_s);
}

void TestTextEditor::anEnormousTextIsShownInPartAndKeptWhole()
{
    const QString text = QString(1'000'000, u'x') + u"end"_s;
    const Scene it(text);
    QVERIFY(it.editor->document()->characterCount() <= ShownText::mostShown + 2);
    QCOMPARE(it.editor->wholeText(), text);
    it.editor->setFocus();
    it.editor->moveCursor(QTextCursor::Start);
    type(it.editor, u"y"_s);
    QCOMPARE(it.editor->wholeText(), u'y' + text);
    it.editor->moveCursor(QTextCursor::End);
    type(it.editor, u"z"_s);
    QVERIFY(it.editor->wholeText() == u'y' + text + u'z');
}

void TestTextEditor::anEnormousTextIsCopiedWhole()
{
    const QString text(100'000, u'x');
    const Scene it(text);
    it.focus();
    QTest::keySequence(it.editor, QKeySequence::SelectAll);
    QTest::keySequence(it.editor, QKeySequence::Copy);
    QVERIFY(QApplication::clipboard()->text() == text);
}

void TestTextEditor::anEnormousTextIsReplacedWhole()
{
    const Scene it(QString(100'000, u'x'));
    it.focus();
    QTest::keySequence(it.editor, QKeySequence::SelectAll);
    type(it.editor, u"x"_s);
    QCOMPARE(it.editor->wholeText(), u"x"_s);
    QTest::keySequence(it.editor, QKeySequence::Undo);
    QCOMPARE(it.editor->wholeText().size(), 100'000);
}

void TestTextEditor::anEnormousPasteIsKeptWholeAndCanBeUndone()
{
    const QString text(1'000'000, u'x');
    QApplication::clipboard()->setText(text);
    const Scene it(u"a\r\nb"_s);
    it.editor->setFocus();
    it.editor->moveCursor(QTextCursor::Start);
    type(it.editor, u"c"_s);
    const QSignalSpy edited(it.editor, &TextEditor::edited);
    QTest::keySequence(it.editor, QKeySequence::Paste);
    QCOMPARE(edited.count(), 1);
    QVERIFY(it.editor->wholeText() == u'c' + text + u"a\r\nb"_s);
    QVERIFY(it.editor->document()->characterCount() <= ShownText::mostShown + 2);
    type(it.editor, u"y"_s);
    QCOMPARE(it.editor->wholeText().size(), 1'000'006);
    while (it.editor->document()->isUndoAvailable() && it.editor->wholeText().size() > 10)
        QTest::keySequence(it.editor, QKeySequence::Undo);
    QCOMPARE(it.editor->wholeText(), u"ca\r\nb"_s);
    QTest::keySequence(it.editor, QKeySequence::Redo);
    QVERIFY(it.editor->wholeText() == u'c' + text + u"a\r\nb"_s);
    QTest::keySequence(it.editor, QKeySequence::Undo);
    it.editor->moveCursor(QTextCursor::End);
    type(it.editor, u"defgh"_s);
    QCOMPARE(it.editor->wholeText(), u"ca\nbdefgh"_s);
}

void TestTextEditor::theCallerFillingTheFieldIsNoEdit()
{
    const Scene it;
    const QSignalSpy edited(it.editor, &TextEditor::edited);
    it.editor->setWholeText(u"a"_s);
    QCOMPARE(edited.count(), 0);
    it.focus();
    QTest::keySequence(it.editor, QKeySequence::Undo);
    QCOMPARE(it.editor->wholeText(), u"a"_s);
    type(it.editor, u"b"_s);
    QCOMPARE(edited.count(), 1);
}

void TestTextEditor::thePlaceholderShowsUntilSomethingIsTyped()
{
    Scene it;
    it.before->setFocus();
    const QRect place(6, 8, 100, 18);
    QVERIFY(hasInk(it, place));
    QVERIFY(!hasInk(it, {2, 8, 4, 18}));
    it.focus();
    type(it.editor, u" "_s);
    it.before->setFocus();
    QVERIFY(!hasInk(it, place));
}

void TestTextEditor::thePlaceholderGivesWayToAComposition()
{
    Scene it;
    it.focus();
    QInputMethodEvent composing(u" "_s, {});
    QApplication::sendEvent(it.editor, &composing);
    QVERIFY(!hasInk(it, {20, 8, 100, 18}));
    QInputMethodEvent nothing;
    QApplication::sendEvent(it.editor, &nothing);
    QVERIFY(hasInk(it, {20, 8, 100, 18}));
}

void TestTextEditor::escapeGivesUpACompositionFirst()
{
    class Outer : public QWidget {
    public:
        int escapes = 0;

    protected:
        void keyPressEvent(QKeyEvent *event) override
        {
            if (event->key() == Qt::Key_Escape)
                ++escapes;
        }
    };
    Outer outer;
    TextEditor editor({}, &outer);
    outer.show();
    editor.setFocus();
    QInputMethodEvent composing(u"^"_s, {});
    QApplication::sendEvent(&editor, &composing);
    QTest::keyClick(&editor, Qt::Key_Escape);
    QCOMPARE(outer.escapes, 0);
    QCOMPARE(editor.wholeText(), QString());
    QTest::keyClick(&editor, Qt::Key_Escape);
    QCOMPARE(outer.escapes, 1);
}

void TestTextEditor::theFieldIsFilledWithinItsLine()
{
    for (const auto scheme : {ColorScheme::Light, ColorScheme::Dark}) {
        QApplication::setPalette(applicationPalette(scheme));
        Scene it;
        it.before->setFocus();
        const QPalette palette = it.editor->palette();
        const int middle = it.editor->height() / 2;
        COMPARE_COLORS(colorAt(it, {0, middle}),
                       blended(buttonLine(palette), windowColor(palette)));
        COMPARE_COLORS(colorAt(it, {1, middle}), surfaceColor(palette));
        COMPARE_COLORS(colorAt(it, {0, 0}), windowColor(palette)); // the corner is round
    }
}

void TestTextEditor::theFocusShowsARingInBothSchemes()
{
    for (const auto scheme : {ColorScheme::Light, ColorScheme::Dark}) {
        QApplication::setPalette(applicationPalette(scheme));
        Scene it;
        it.editor->setFocus(Qt::MouseFocusReason);
        const QColor ink = accentInk(it.editor->palette());
        COMPARE_COLORS(colorAt(it, {-1, 40}), ink);
        COMPARE_COLORS(colorAt(it, {0, 40}), ink);
        COMPARE_COLORS(colorAt(it, {1, 40}), surfaceColor(it.editor->palette()));
    }
}

void TestTextEditor::theFieldIsEightyHighAndScrolls()
{
    const Scene it(u"a\n"_s.repeated(40));
    QCOMPARE(it.editor->height(), 80);
    QVERIFY(it.editor->verticalScrollBar()->maximum() > 0);
    it.focus();
    type(it.editor, u"b"_s);
    QVERIFY(it.editor->verticalScrollBar()->value() > 0);
    QVERIFY(it.editor->viewport()->rect().contains(it.editor->cursorRect()));
}

QTEST_MAIN(TestTextEditor)
#include "test_text_editor.moc"
