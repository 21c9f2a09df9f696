#include "controls/TextEditor.h"

#include "controls/EndOfComposition.h"
#include "controls/FieldFrame.h"
#include "controls/ThinScrollBar.h"
#include "look/Colors.h"
#include "look/Fonts.h"

#include <QInputMethodEvent>
#include <QMimeData>
#include <QPainter>
#include <QScopedValueRollback>
#include <QTextBlock>
#include <QTextCursor>
#include <QTextDocument>

#include <algorithm>
#include <iterator>

namespace {

constexpr int line = 1;
constexpr int leastHeight = 80;
constexpr QPoint placeholderInset(6, 8);

QString withLineFeeds(QString paragraphs)
{
    return paragraphs.replace(QChar::ParagraphSeparator, u'\n');
}

} // namespace

TextEditor::TextEditor(const QString &placeholder, QWidget *parent)
    : QTextEdit(parent)
    , m_placeholder(placeholder)
{
    setAcceptRichText(false);
    setTabChangesFocus(true);
    setFont(appFont(13));
    setFrameShape(QFrame::NoFrame);
    setWordWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    setVerticalScrollBar(new ThinScrollBar(this));
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    setViewportMargins(line, line, line, line);
    document()->setDocumentMargin(fieldPadding - line);
    // The fill has round corners: the toolkit must not lay a square one over it.
    setAutoFillBackground(false);
    viewport()->setAutoFillBackground(false);
    addFieldRing(this);
    new EndOfComposition(this);
    setWholeText({});
    connect(this, &QTextEdit::textChanged, this, &TextEditor::noteChange);
}

void TextEditor::setWholeText(const QString &text)
{
    const QScopedValueRollback filling(m_isFilling, true);
    m_bases.clear();
    const ShownText &base = m_bases.emplace(0, ShownText(text)).first->second;
    setPlainText(base.shown());
    setLinePitch();
    document()->clearUndoRedoStacks();
}

QString TextEditor::wholeText() const
{
    return base().wholeAfter(shownNow());
}

QSize TextEditor::sizeHint() const
{
    return {QTextEdit::sizeHint().width(), scaled(leastHeight)};
}

QSize TextEditor::minimumSizeHint() const
{
    return {2 * scaled(leastHeight), scaled(leastHeight)};
}

bool TextEditor::event(QEvent *event)
{
    // What paintEvent() paints is the viewport, which lies within the line.
    if (event->type() == QEvent::Paint) {
        QPainter painter(this);
        paintFieldFrame(painter, rect(), palette());
        return true;
    }
    return QTextEdit::event(event);
}

QMimeData *TextEditor::createMimeDataFromSelection() const
{
    // Letter by letter, and all of it when all of it is selected.
    const QTextCursor cursor = textCursor();
    const bool isAll =
        cursor.selectionStart() == 0 && cursor.selectionEnd() == document()->characterCount() - 1;
    auto *copied = new QMimeData;
    copied->setText(isAll ? wholeText() : withLineFeeds(cursor.selectedText()));
    return copied;
}

void TextEditor::insertFromMimeData(const QMimeData *source)
{
    if (!source->hasText() || isReadOnly())
        return;
    const QString text = source->text();
    if (document()->characterCount() + text.size() > ShownText::mostShown)
        pasteLong(text);
    else
        textCursor().insertText(text);
    ensureCursorVisible();
}

void TextEditor::inputMethodEvent(QInputMethodEvent *event)
{
    m_isComposing = !event->preeditString().isEmpty();
    QTextEdit::inputMethodEvent(event);
    viewport()->update();
}

void TextEditor::keyPressEvent(QKeyEvent *event)
{
    // The toolkit would insert a character of its own kind, which other readers do not break at.
    if (event->matches(QKeySequence::InsertLineSeparator)) {
        textCursor().insertBlock();
        ensureCursorVisible();
        return;
    }
    QTextEdit::keyPressEvent(event);
}

void TextEditor::paintEvent(QPaintEvent *event)
{
    QTextEdit::paintEvent(event);
    if (!document()->isEmpty() || m_isComposing)
        return;
    const QPoint inset = placeholderInset - viewport()->geometry().topLeft();
    const QRect room = viewport()->rect().adjusted(inset.x(), inset.y(), -inset.x(), 0);
    QPainter painter(viewport());
    painter.setFont(font());
    painter.setPen(secondaryText(palette()));
    const QRect firstLine(room.topLeft(), QSize(room.width(), lineHeight(font())));
    painter.drawText(firstLine, Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine,
                     painter.fontMetrics().elidedText(m_placeholder, Qt::ElideRight, room.width()));
}

void TextEditor::setLinePitch()
{
    QTextBlockFormat format;
    format.setLineHeight(lineHeight(font()), QTextBlockFormat::FixedHeight);
    QTextCursor cursor(document());
    cursor.select(QTextCursor::Document);
    cursor.mergeBlockFormat(format);
}

void TextEditor::pasteLong(const QString &text)
{
    QTextCursor cursor = textCursor();
    const int from = cursor.selectionStart();
    const QString before = shownNow();
    const ShownText after(
        base().wholeAfter(before.first(from) + text + before.sliced(cursor.selectionEnd())));
    {
        const QScopedValueRollback filling(m_isFilling, true);
        forgetLaterBases();
        cursor.select(QTextCursor::Document);
        cursor.insertText(after.shown());
        m_bases.insert_or_assign(document()->availableUndoSteps(), after);
    }
    const auto end = std::min(from + text.size(), after.shown().size() - 1);
    cursor.setPosition(static_cast<int>(end));
    setTextCursor(cursor);
    Q_EMIT edited();
}

QString TextEditor::shownNow() const
{
    // Not toPlainText(), which turns no-break spaces into spaces.
    return withLineFeeds(document()->toRawText());
}

const ShownText &TextEditor::base() const
{
    return std::prev(m_bases.upper_bound(document()->availableUndoSteps()))->second;
}

void TextEditor::forgetLaterBases()
{
    m_bases.erase(m_bases.upper_bound(document()->availableUndoSteps()), m_bases.end());
}

void TextEditor::noteChange()
{
    if (m_isFilling)
        return;
    // A change that is no undoing leaves nothing to do again, and so no later start.
    if (!document()->isRedoAvailable())
        forgetLaterBases();
    Q_EMIT edited();
}
