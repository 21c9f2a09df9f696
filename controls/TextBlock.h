#pragma once

#include <QFont>
#include <QString>
#include <QTextLayout>

#include <memory>

class QPainter;

/// Plain text laid out in lines, between words and within words if it must; laid out once for a
/// width and then only painted. Of a text beyond any page it lays out the beginning.
class TextBlock {
public:
    /// `maximumLines`: 0 for as many as it takes.
    TextBlock(const QString &text, const QFont &font, int maximumLines = 0,
              Qt::Alignment alignment = Qt::AlignLeft);

    /// Lays the text out, unless it is laid out for this width already.
    void layOut(int width);

    int width() const { return m_width; } ///< -1 before the first layout
    int height() const { return m_height; } ///< of the lines; an empty text has one line
    bool isCut() const { return m_cut; } ///< something is left out: it ends in an ellipsis
    int indent() const; ///< of the line that begins farthest in, for its letter to be whole
    int naturalWidth() const; ///< the width that takes the longest line whole

    /// How many code units are laid out: the places of the cursor go from 0 to here.
    int length() const { return static_cast<int>(m_text.size()); }
    /// The place of the cursor nearest to a point. This and what follows are of a text that was
    /// laid out.
    int positionAt(QPointF point) const;
    enum class Way {
        NextLetter,
        PreviousLetter,
        NextWord,
        PreviousWord,
        LineBelow,
        LineAbove,
        StartOfLine,
        EndOfLine
    };
    int moved(int position, Way way) const;
    /// What stands between two places, its line breaks as line feeds.
    QString textBetween(int from, int to) const;

    /// `selections` in the colours of their formats; of a text that is cut, all of it or nothing.
    void paint(QPainter &painter, QPointF topLeft, const QColor &color,
               const QList<QTextLayout::FormatRange> &selections = {}) const;

private:
    struct Extent {
        int end;
        int height;
        int lines;
    };
    Extent breakLines(QTextLayout &layout, int mostLines, int top) const;
    QString lastLine(int from, int room) const;
    int lineEnd(const QTextLine &line) const;

    QString m_text; ///< what is laid out, with line separators
    QFont m_font;
    QTextOption m_option;
    int m_maximumLines;
    int m_pitch;
    bool m_bounded; ///< the text goes on after m_text
    int m_width = -1;
    int m_height = 0;
    int m_lineCount = 0;
    bool m_cut = false;
    mutable int m_naturalWidth = -1;
    std::unique_ptr<QTextLayout> m_lines;
    std::unique_ptr<QTextLayout> m_ellipsisLine; ///< instead of the last of a cut text
};
