#include "controls/TextSelection.h"

#include "controls/TextBlock.h"

#include <QClipboard>
#include <QContextMenuEvent>
#include <QCoreApplication>
#include <QFocusEvent>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QMenu>
#include <QMouseEvent>
#include <QPalette>
#include <QWidget>

#include <algorithm>
#include <optional>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

/// Where the cursor goes for a key that extends a selection.
std::optional<int> movedCursor(const QKeyEvent &event, const TextBlock &block, int cursor)
{
    using Way = TextBlock::Way;
    static const QList<std::pair<QKeySequence::StandardKey, Way>> ways{
        {QKeySequence::SelectNextChar, Way::NextLetter},
        {QKeySequence::SelectPreviousChar, Way::PreviousLetter},
        {QKeySequence::SelectNextWord, Way::NextWord},
        {QKeySequence::SelectPreviousWord, Way::PreviousWord},
        {QKeySequence::SelectNextLine, Way::LineBelow},
        {QKeySequence::SelectPreviousLine, Way::LineAbove},
        {QKeySequence::SelectEndOfLine, Way::EndOfLine},
        {QKeySequence::SelectStartOfLine, Way::StartOfLine},
    };
    for (const auto &[key, way] : ways) {
        if (event.matches(key))
            return block.moved(cursor, way);
    }
    if (event.matches(QKeySequence::SelectStartOfDocument))
        return 0;
    if (event.matches(QKeySequence::SelectEndOfDocument))
        return block.length();
    return {};
}

} // namespace

TextSelection::TextSelection(QWidget *label, TextBlock *block, const QString *text, int left)
    : QObject(label)
    , m_label(label)
    , m_block(block)
    , m_text(text)
    , m_left(left)
{
    label->setCursor(Qt::IBeamCursor);
    label->setFocusPolicy(Qt::StrongFocus);
    label->installEventFilter(this);
}

QList<QTextLayout::FormatRange> TextSelection::formats() const
{
    if (m_anchor == m_cursor)
        return {};
    QTextLayout::FormatRange range;
    range.start = first();
    range.length = last() - first();
    range.format.setBackground(m_label->palette().highlight());
    range.format.setForeground(m_label->palette().highlightedText());
    return {range};
}

QString TextSelection::selected() const
{
    if (m_anchor == m_cursor)
        return {};
    return isAll() ? *m_text : shown().textBetween(first(), last());
}

void TextSelection::selectAll()
{
    select(0, shown().length());
}

void TextSelection::clear()
{
    select(m_cursor, m_cursor);
}

void TextSelection::copy() const
{
    if (m_anchor != m_cursor)
        QGuiApplication::clipboard()->setText(selected());
}

bool TextSelection::eventFilter(QObject *, QEvent *event)
{
    switch (event->type()) {
    case QEvent::MouseButtonPress:
        return press(static_cast<const QMouseEvent &>(*event));
    case QEvent::MouseButtonDblClick:
        selectWordAt(positionAt(static_cast<const QMouseEvent &>(*event)));
        return true;
    case QEvent::MouseMove:
        if (m_isDragging)
            select(m_anchor, positionAt(static_cast<const QMouseEvent &>(*event)));
        return m_isDragging;
    case QEvent::MouseButtonRelease:
        m_isDragging = false;
        // Where a desktop has a selection of its own, the middle button pastes it.
        if (m_anchor != m_cursor && QGuiApplication::clipboard()->supportsSelection())
            QGuiApplication::clipboard()->setText(selected(), QClipboard::Selection);
        return true;
    case QEvent::ContextMenu:
        offer(static_cast<const QContextMenuEvent &>(*event));
        return true;
    case QEvent::KeyPress:
        return handleKey(static_cast<const QKeyEvent &>(*event));
    case QEvent::FocusIn: {
        const auto reason = static_cast<QFocusEvent *>(event)->reason();
        if (reason == Qt::TabFocusReason || reason == Qt::BacktabFocusReason)
            selectAll();
        break;
    }
    case QEvent::FocusOut: {
        const auto reason = static_cast<QFocusEvent *>(event)->reason();
        if (reason != Qt::PopupFocusReason && reason != Qt::ActiveWindowFocusReason)
            clear();
        break;
    }
    default:
        break;
    }
    return false;
}

const TextBlock &TextSelection::shown() const
{
    m_block->layOut(m_label->width() - m_left);
    return *m_block;
}

bool TextSelection::isAll() const
{
    return first() == 0 && last() == shown().length();
}

int TextSelection::positionAt(const QMouseEvent &event) const
{
    return shown().positionAt(event.position() - QPointF(m_left, 0));
}

void TextSelection::select(int anchor, int cursor)
{
    // What is left out cannot be pointed at: a text that is cut is selected as a whole.
    if (shown().isCut() && anchor != cursor) {
        anchor = 0;
        cursor = shown().length();
    }
    m_anchor = anchor;
    m_cursor = cursor;
    m_label->update();
}

bool TextSelection::press(const QMouseEvent &event)
{
    if (event.button() != Qt::LeftButton)
        return false;
    const int position = positionAt(event);
    select(event.modifiers() & Qt::ShiftModifier ? m_anchor : position, position);
    m_isDragging = true;
    return true;
}

void TextSelection::selectWordAt(int position)
{
    // From blank to blank, so that an address is one word.
    const QString text = shown().textBetween(0, shown().length());
    const auto isBlank = [](QChar c) { return c.isSpace(); };
    const auto at = text.begin() + std::min<qsizetype>(position, text.size());
    const auto end = std::find_if(at, text.end(), isBlank);
    const auto begin = std::find_if(std::reverse_iterator(at), text.rend(), isBlank).base();
    select(static_cast<int>(begin - text.begin()), static_cast<int>(end - text.begin()));
}

bool TextSelection::handleKey(const QKeyEvent &event)
{
    if (event.matches(QKeySequence::Copy))
        copy();
    else if (event.matches(QKeySequence::SelectAll))
        selectAll();
    else if (const auto cursor = movedCursor(event, shown(), m_cursor))
        select(m_anchor, *cursor);
    else
        return false;
    return true;
}

void TextSelection::offer(const QContextMenuEvent &event)
{
    if (m_anchor == m_cursor)
        selectAll();
    // In the toolkit's words, as the menus of the entry fields are.
    const auto word = [](const char *text) {
        return QCoreApplication::translate("QWidgetTextControl", text);
    };
    auto *menu = new QMenu(m_label);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    menu->addAction(word("&Copy"), this, &TextSelection::copy);
    menu->addAction(word("Select All"), this, &TextSelection::selectAll);
    menu->popup(event.globalPos());
}
