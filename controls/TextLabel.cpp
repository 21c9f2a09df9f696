#include "controls/TextLabel.h"

#include "look/Fonts.h"

#include <algorithm>

namespace {

constexpr int widestHint = 1200; ///< a wish beyond it would make a window of a long text

} // namespace

TextLabel::TextLabel(QWidget *parent)
    : TextLabel({}, appFont(13), primaryText, parent)
{
}

TextLabel::TextLabel(const QString &text, const QFont &font, ColorRole color, QWidget *parent)
    : BlockLabel(font, color, parent)
{
    QSizePolicy policy(QSizePolicy::Preferred, QSizePolicy::Preferred);
    policy.setHeightForWidth(true);
    setSizePolicy(policy);
    setFont(font);
    setText(text);
}

void TextLabel::setMaximumLines(int lines)
{
    m_maximumLines = lines;
    rebuild();
}

void TextLabel::setAlignment(Qt::Alignment alignment)
{
    m_alignment = alignment & Qt::AlignHorizontal_Mask;
    rebuild();
}

QSize TextLabel::sizeHint() const
{
    const int width = std::min(naturalWidth(), widestHint);
    return {width, heightForWidth(width)};
}

QSize TextLabel::minimumSizeHint() const
{
    return {std::min(naturalWidth(), 2 * fontMetrics().height()), lineHeight(font())};
}

TextBlock TextLabel::block() const
{
    return {text(), font(), m_maximumLines, m_alignment};
}
