#include "controls/ErrorText.h"

#include "controls/TextBlock.h"
#include "controls/ThinScrollBar.h"
#include "look/Accessibility.h"
#include "look/Colors.h"
#include "look/Fonts.h"

#include <QEvent>
#include <QMimeData>
#include <QScrollBar>
#include <QTextBlockFormat>
#include <QTextCursor>
#include <QTextDocument>
#include <QTextDocumentFragment>
#include <QTextEdit>
#include <QTextFrame>

#include <algorithm>

namespace {

constexpr qsizetype mostShown = 20'000; ///< characters; beyond it layout takes seconds

} // namespace

/// A read-only editor without a frame that gives back its whole text when all of it is copied.
class ErrorView : public QTextEdit {
public:
    explicit ErrorView(QWidget *parent)
        : QTextEdit(parent)
    {
        setAcceptRichText(false);
        setReadOnly(true);
        setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
        setFrameShape(QFrame::NoFrame);
        setWordWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
        setVerticalScrollBar(new ThinScrollBar(this));
        setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
        setTabChangesFocus(true);
        document()->setDocumentMargin(0);
        document()->setUndoRedoEnabled(false);
        viewport()->setAutoFillBackground(false);
        setAutoFillBackground(false);
    }

    void show(const QString &whole, int pitch)
    {
        m_whole = whole;
        QString shown = whole.first(std::min(whole.size(), mostShown));
        if (shown.size() < whole.size())
            shown += QChar(0x2026);
        setPlainText(shown);
        QTextBlockFormat format;
        format.setLineHeight(pitch, QTextBlockFormat::FixedHeight);
        QTextCursor cursor(document());
        cursor.select(QTextCursor::Document);
        cursor.mergeBlockFormat(format);
        verticalScrollBar()->setValue(0);
    }

    /// Pixels that stay free at the left of every line.
    void setIndent(int indent)
    {
        QTextFrameFormat format = document()->rootFrame()->frameFormat();
        format.setLeftMargin(indent);
        document()->rootFrame()->setFrameFormat(format);
    }

protected:
    void showEvent(QShowEvent *event) override
    {
        // The cursor, too high for the room there is before a layout, would scroll to be seen
        // whole.
        const int place = verticalScrollBar()->value();
        QTextEdit::showEvent(event);
        verticalScrollBar()->setValue(place);
    }

    QMimeData *createMimeDataFromSelection() const override
    {
        const auto cursor = textCursor();
        const bool all = cursor.selectionStart() == 0
            && cursor.selectionEnd() == document()->characterCount() - 1;
        auto *copied = new QMimeData;
        copied->setText(all ? m_whole : cursor.selection().toPlainText());
        return copied;
    }

private:
    QString m_whole;
};

ErrorText::ErrorText(QWidget *parent)
    : QWidget(parent)
    , m_view(new ErrorView(this))
{
    QSizePolicy policy(QSizePolicy::Expanding, QSizePolicy::Preferred);
    policy.setHeightForWidth(true);
    setSizePolicy(policy);
    setFocusProxy(m_view);
    setFont(appFont(13));
    setAccessibleRole(this, QAccessible::Notification);
    updateColor();
}

void ErrorText::setText(const QString &text)
{
    if (text == m_text)
        return;
    m_text = text;
    setAccessibleName(text);
    m_view->setAccessibleName(text);
    m_view->show(text, lineHeight(font()));
    fit();
    updateGeometry();
    if (isVisible())
        announce();
}

void ErrorText::setMaximumLines(int lines)
{
    m_maximumLines = lines;
    updateGeometry();
}

int ErrorText::heightForWidth(int width) const
{
    TextBlock block(m_text, font(), m_maximumLines);
    block.layOut(width);
    block.layOut(width - block.indent());
    return block.height();
}

QSize ErrorText::sizeHint() const
{
    constexpr int usualWidth = 320;
    return {usualWidth, heightForWidth(usualWidth)};
}

QSize ErrorText::minimumSizeHint() const
{
    return {2 * fontMetrics().height(), lineHeight(font())};
}

void ErrorText::changeEvent(QEvent *event)
{
    if (event->type() == QEvent::PaletteChange)
        updateColor();
    QWidget::changeEvent(event);
}

void ErrorText::resizeEvent(QResizeEvent *)
{
    // Not by a layout: the height for a width is asked of a layout rather than of its widget.
    fit();
}

void ErrorText::fit()
{
    TextBlock block(m_text, font());
    block.layOut(width());
    const int indent = block.indent();
    block.layOut(width() - indent);
    // A bar that came with a lesser height takes width: the text then needs a line more, and that
    // keeps the bar where it has become needless.
    const bool scrolls = block.height() > height();
    m_view->setVerticalScrollBarPolicy(scrolls ? Qt::ScrollBarAlwaysOn : Qt::ScrollBarAlwaysOff);
    // No line is cut in the middle.
    const int pitch = lineHeight(font());
    const int cut = scrolls && height() > pitch ? height() % pitch : 0;
    m_view->setIndent(indent);
    m_view->setGeometry(rect().adjusted(0, 0, 0, -cut));
}

void ErrorText::updateColor()
{
    QPalette colors = palette();
    colors.setColor(QPalette::Text, red(colors));
    colors.setColor(QPalette::Base, Qt::transparent);
    m_view->setPalette(colors);
}

void ErrorText::announce()
{
    // Screen readers speak an alert when it appears, and this one is there already.
    QAccessibleEvent gone(this, QAccessible::ObjectHide);
    QAccessible::updateAccessibility(&gone);
    QAccessibleEvent shown(this, QAccessible::ObjectShow);
    QAccessible::updateAccessibility(&shown);
}
