#include "controls/TextBlock.h"

#include "look/Fonts.h"

#include <QFontMetricsF>
#include <QGlyphRun>
#include <QPainter>
#include <QRawFont>

#include <algorithm>
#include <cmath>

using namespace Qt::StringLiterals;

namespace {

constexpr QChar ellipsis(0x2026);
/// More than any screen shows in one line, and in all: shaping takes its time by the character.
constexpr qsizetype mostInLine = 1500;
constexpr qsizetype mostInAll = 20'000;
constexpr qreal unlimited = 1 << 24; ///< pixels

/// As the layout takes it: line separators for every kind of line break.
QString withLineSeparators(QString text)
{
    text.replace(u"\r\n"_s, u"\n"_s);
    for (QChar &c : text) {
        if (c == u'\n' || c == u'\r' || c == QChar::ParagraphSeparator || c == u'\v' || c == u'\f'
            || c == QChar(0x85))
            c = QChar::LineSeparator;
    }
    return text;
}

QString firstOf(const QString &text, qsizetype most)
{
    if (text.size() <= most)
        return text;
    return text.first(text[most - 1].isHighSurrogate() ? most - 1 : most);
}

/// How far a line's first letter reaches out to the left of where it stands, as "J" does in some
/// fonts: a label ends there.
int overhang(const QTextLine &line)
{
    if (line.textLength() == 0)
        return 0;
    const auto runs = line.glyphRuns(line.textStart(), 1);
    qreal left = 0;
    for (const QGlyphRun &run : runs) {
        const auto glyphs = run.glyphIndexes();
        const auto positions = run.positions();
        for (qsizetype i = 0; i < glyphs.size(); ++i)
            left = std::min(
                left, positions[i].x() - line.x() + run.rawFont().boundingRect(glyphs[i]).left());
    }
    return qCeil(-left);
}

} // namespace

TextBlock::TextBlock(const QString &text, const QFont &font, int maximumLines,
                     Qt::Alignment alignment)
    : m_font(font)
    , m_option(alignment)
    , m_maximumLines(maximumLines)
    , m_pitch(lineHeight(font))
{
    const auto most = maximumLines > 0 ? std::min(mostInAll, mostInLine * maximumLines) : mostInAll;
    m_text = withLineSeparators(firstOf(text, most));
    m_bounded = text.size() > most;
    m_option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
}

void TextBlock::layOut(int width)
{
    width = std::max(width, 1);
    if (width == m_width)
        return;
    m_width = width;
    m_ellipsisLine.reset();
    m_lines = std::make_unique<QTextLayout>(m_text, m_font);
    Extent extent = breakLines(*m_lines, m_maximumLines, 0);
    m_cut = m_bounded || extent.end < m_text.size();
    if (m_cut) {
        // The last line again, with what follows it, so that the ellipsis stands where it must.
        const auto last = m_lines->lineAt(m_lines->lineCount() - 1);
        const int top = extent.height - std::max(m_pitch, qCeil(last.height()));
        // It begins with the same letter, and so as far in.
        const int room = m_width - qRound(last.x());
        m_ellipsisLine = std::make_unique<QTextLayout>(lastLine(last.textStart(), room), m_font);
        extent.height = breakLines(*m_ellipsisLine, 1, top).height;
    }
    m_height = extent.height;
    m_lineCount = extent.lines;
}

TextBlock::Extent TextBlock::breakLines(QTextLayout &layout, int mostLines, int top) const
{
    layout.setTextOption(m_option);
    layout.setCacheEnabled(true);
    layout.clearLayout();
    Extent extent{0, top, 0};
    layout.beginLayout();
    while (mostLines == 0 || extent.lines < mostLines) {
        QTextLine line = layout.createLine();
        if (!line.isValid())
            break;
        line.setLineWidth(m_width);
        const int inset =
            std::min(m_option.alignment() & Qt::AlignLeft ? overhang(line) : 0, m_width - 1);
        if (inset > 0)
            line.setLineWidth(m_width - inset);
        const int pitch = std::max(m_pitch, qCeil(line.height()));
        line.setPosition({qreal(inset), extent.height + std::floor((pitch - line.height()) / 2)});
        extent.end = line.textStart() + line.textLength();
        extent.height += pitch;
        ++extent.lines;
    }
    layout.endLayout();
    return extent;
}

QString TextBlock::lastLine(int from, int room) const
{
    const auto lineEnd = m_text.indexOf(QChar::LineSeparator, from);
    const bool goesOn = m_bounded || lineEnd >= 0;
    QString line = firstOf(m_text.mid(from, lineEnd < 0 ? -1 : lineEnd - from), mostInLine);
    if (goesOn)
        line += ellipsis;
    return QFontMetricsF(m_font).elidedText(line, Qt::ElideRight, room);
}

int TextBlock::naturalWidth() const
{
    if (m_naturalWidth < 0) {
        QTextLayout layout(firstOf(m_text, mostInLine), m_font);
        layout.setTextOption(m_option);
        layout.beginLayout();
        qreal widest = 0;
        for (auto line = layout.createLine(); line.isValid(); line = layout.createLine()) {
            line.setLineWidth(unlimited);
            widest = std::max(widest, line.naturalTextWidth() + overhang(line));
        }
        layout.endLayout();
        m_naturalWidth = qCeil(widest);
    }
    return m_naturalWidth;
}

int TextBlock::indent() const
{
    qreal farthest = 0;
    for (int i = 0; i < m_lines->lineCount(); ++i)
        farthest = std::max(farthest, m_lines->lineAt(i).x());
    return qRound(farthest);
}

int TextBlock::positionAt(QPointF point) const
{
    int i = 0;
    while (i + 1 < m_lines->lineCount() && point.y() >= m_lines->lineAt(i + 1).y())
        ++i;
    const QTextLine line = m_lines->lineAt(i);
    return std::min(line.xToCursor(point.x()), lineEnd(line));
}

int TextBlock::moved(int position, Way way) const
{
    const QTextLine line = m_lines->lineForTextPosition(position);
    const auto beside = [&](int number) {
        if (number < 0 || number >= m_lines->lineCount())
            return number < 0 ? 0 : length();
        const QTextLine to = m_lines->lineAt(number);
        return std::min(to.xToCursor(line.cursorToX(position)), lineEnd(to));
    };
    switch (way) {
    case Way::NextLetter:
        return m_lines->nextCursorPosition(position);
    case Way::PreviousLetter:
        return m_lines->previousCursorPosition(position);
    case Way::NextWord:
        return m_lines->nextCursorPosition(position, QTextLayout::SkipWords);
    case Way::PreviousWord:
        return m_lines->previousCursorPosition(position, QTextLayout::SkipWords);
    case Way::LineBelow:
        return beside(line.lineNumber() + 1);
    case Way::LineAbove:
        return beside(line.lineNumber() - 1);
    case Way::StartOfLine:
        return line.textStart();
    case Way::EndOfLine:
        return lineEnd(line);
    }
    return position;
}

QString TextBlock::textBetween(int from, int to) const
{
    return m_text.mid(from, to - from).replace(QChar::LineSeparator, u'\n');
}

void TextBlock::paint(QPainter &painter, QPointF topLeft, const QColor &color,
                      const QList<QTextLayout::FormatRange> &selections) const
{
    painter.setPen(color);
    if (!m_ellipsisLine) {
        m_lines->draw(&painter, topLeft, selections);
        return;
    }
    if (!selections.isEmpty()) {
        const QTextCharFormat &format = selections.first().format;
        painter.fillRect(QRectF(topLeft, QSizeF(m_width, m_height)), format.background());
        painter.setPen(format.foreground().color());
    }
    for (int i = 0; i < m_lineCount - 1; ++i)
        m_lines->lineAt(i).draw(&painter, topLeft);
    m_ellipsisLine->draw(&painter, topLeft);
}

/// The last place of the cursor in a line, before the break that ends it.
int TextBlock::lineEnd(const QTextLine &line) const
{
    const int end = line.textStart() + line.textLength();
    return end > line.textStart() && m_text[end - 1] == QChar::LineSeparator ? end - 1 : end;
}
