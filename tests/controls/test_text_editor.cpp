// What is typed into the field of several lines, and what it looks like.

#include "look/Colors.h"
#include "look/FocusRing.h"
#include "support/EditorScene.h"

#include <QApplication>
#include <QClipboard>
#include <QInputMethodEvent>
#include <QMimeData>
#include <QScrollBar>
#include <QSignalSpy>

using namespace Qt::StringLiterals;

class TestTextEditor : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void whatIsTypedIsKeptLetterByLetter();
    void anUntouchedTextIsKeptLetterByLetter();
    void aTouchedTextKeepsWhatWasNotTouched();
    void undoingEverythingBringsBackTheVeryText();
    void returnAndShiftReturnBothBeginALine();
    void tabLeavesTheFieldBothWays();
    void copyAndPasteKeepNoBreakSpaces();
    void pastedMarkupIsPlainText();
    void theCallerFillingTheFieldIsNoEdit();
    void thePlaceholderShowsUntilSomethingIsTyped();
    void thePlaceholderGivesWayToAComposition();
    void escapeGivesUpACompositionFirst();
    void theFieldIsFilledWithinItsLine();
    void theFocusShowsARingInBothSchemes();
    void theFieldIsEightyHighAndScrolls();
};

void TestTextEditor::whatIsTypedIsKeptLetterByLetter()
{
    EditorScene it;
    it.focus();
    type(it.editor, u"a\u00a0b\u202fc"_s);
    QTest::keyClick(it.editor, Qt::Key_Return);
    type(it.editor, u"d "_s);
    QCOMPARE(it.editor->wholeText(), u"a\u00a0b\u202fc\nd "_s);
}

void TestTextEditor::anUntouchedTextIsKeptLetterByLetter()
{
    const QString text = u"a\u00a0b\r\nc\rd\u2028e\u2029f\u0085g\th\u200b\ufeff"_s;
    const EditorScene it(text);
    QCOMPARE(it.editor->wholeText(), text);
}

void TestTextEditor::aTouchedTextKeepsWhatWasNotTouched()
{
    const EditorScene it(u"a\u00a0b\r\nc\rd\u2028e\u2029f"_s);
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
    const EditorScene it(text);
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
    const EditorScene it;
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
    const EditorScene it(u"a"_s);
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
    const EditorScene it(u"a\u00a0b\nc"_s);
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
    const EditorScene it;
    it.focus();
    QTest::keySequence(it.editor, QKeySequence::Paste);
    QCOMPARE(it.editor->wholeText(), u"<b>gras</b>"_s);
    QCOMPARE(it.editor->document()->toPlainText(), u"<b>gras</b>"_s);
}

void TestTextEditor::theCallerFillingTheFieldIsNoEdit()
{
    const EditorScene it;
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
    EditorScene it;
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
    EditorScene it;
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
        EditorScene it;
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
        EditorScene it;
        it.editor->setFocus(Qt::MouseFocusReason);
        const QColor ink = accentInk(it.editor->palette());
        COMPARE_COLORS(colorAt(it, {-1, 40}), ink);
        COMPARE_COLORS(colorAt(it, {0, 40}), ink);
        COMPARE_COLORS(colorAt(it, {1, 40}), surfaceColor(it.editor->palette()));
    }
}

void TestTextEditor::theFieldIsEightyHighAndScrolls()
{
    const EditorScene it(u"a\n"_s.repeated(40));
    QCOMPARE(it.editor->height(), 80);
    QVERIFY(it.editor->verticalScrollBar()->maximum() > 0);
    it.focus();
    type(it.editor, u"b"_s);
    QVERIFY(it.editor->verticalScrollBar()->value() > 0);
    QVERIFY(it.editor->viewport()->rect().contains(it.editor->cursorRect()));
}

QTEST_MAIN(TestTextEditor)
#include "test_text_editor.moc"
