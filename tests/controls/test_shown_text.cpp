// The part of a text that the field of several lines shows, and the whole that it stands for.

#include "controls/ShownText.h"
#include "support/EditorScene.h"

#include <QApplication>
#include <QClipboard>
#include <QMimeData>
#include <QSignalSpy>

using namespace Qt::StringLiterals;

class TestShownText : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void aChangeMadeToWhatIsShownIsMadeToTheWhole_data();
    void aChangeMadeToWhatIsShownIsMadeToTheWhole();
    void theMarkOfACutTextStandsForTheRest();
    void aCutNeverSplitsACharacter();
    void anEnormousTextIsShownInPartAndKeptWhole();
    void anEnormousTextIsCopiedWhole();
    void anEnormousTextIsReplacedWhole();
    void anEnormousPasteIsKeptWholeAndCanBeUndone();
};

void TestShownText::aChangeMadeToWhatIsShownIsMadeToTheWhole_data()
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

void TestShownText::aChangeMadeToWhatIsShownIsMadeToTheWhole()
{
    QFETCH(QString, whole);
    QFETCH(QString, now);
    QTEST(ShownText(whole).wholeAfter(now), "after");
}

void TestShownText::theMarkOfACutTextStandsForTheRest()
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

void TestShownText::aCutNeverSplitsACharacter()
{
    QCOMPARE(ShownText(u"ab\U0001f600c"_s, 3).shown(), u"ab\u22ef"_s);
    const ShownText text(u"ab\r\ncd"_s, 3);
    QCOMPARE(text.wholeAfter(text.shown() + u'x'), u"ab\r\ncdx"_s);
    QCOMPARE(text.wholeAfter(u'x' + text.shown()), u"xab\r\ncd"_s);
}

void TestShownText::anEnormousTextIsShownInPartAndKeptWhole()
{
    const QString text = QString(1'000'000, u'x') + u"end"_s;
    const EditorScene it(text);
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

void TestShownText::anEnormousTextIsCopiedWhole()
{
    const QString text(100'000, u'x');
    const EditorScene it(text);
    it.focus();
    QTest::keySequence(it.editor, QKeySequence::SelectAll);
    QTest::keySequence(it.editor, QKeySequence::Copy);
    QVERIFY(QApplication::clipboard()->text() == text);
}

void TestShownText::anEnormousTextIsReplacedWhole()
{
    const EditorScene it(QString(100'000, u'x'));
    it.focus();
    QTest::keySequence(it.editor, QKeySequence::SelectAll);
    type(it.editor, u"x"_s);
    QCOMPARE(it.editor->wholeText(), u"x"_s);
    QTest::keySequence(it.editor, QKeySequence::Undo);
    QCOMPARE(it.editor->wholeText().size(), 100'000);
}

void TestShownText::anEnormousPasteIsKeptWholeAndCanBeUndone()
{
    const QString text(1'000'000, u'x');
    QApplication::clipboard()->setText(text);
    const EditorScene it(u"a\r\nb"_s);
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

QTEST_MAIN(TestShownText)
#include "test_shown_text.moc"
