#include "controls/TextLabel.h"

#include "look/Accessibility.h"
#include "look/Fonts.h"
#include "look/Painting.h"

#include <QEvent>
#include <QPainter>

namespace {

constexpr int widestHint = 1200; ///< a wish beyond it would make a window of a long text

} // namespace

TextLabel::TextLabel(QWidget *parent)
    : TextLabel({}, appFont(13), primaryText, parent)
{
}

TextLabel::TextLabel(const QString &text, const QFont &font, ColorRole color, QWidget *parent)
    : QWidget(parent)
    , m_text(text)
    , m_color(color)
    , m_block(text, font)
{
    QSizePolicy policy(QSizePolicy::Preferred, QSizePolicy::Preferred);
    policy.setHeightForWidth(true);
    setSizePolicy(policy);
    setFont(font);
    setAccessibleRole(this, QAccessible::StaticText);
    setAccessibleName(text);
}

void TextLabel::setText(const QString &text)
{
    if (text == m_text)
        return;
    m_text = text;
    setAccessibleName(text);
    rebuild();
}

void TextLabel::setMaximumLines(int lines)
{
    m_maximumLines = lines;
    rebuild();
}

void TextLabel::setColor(ColorRole color)
{
    m_color = color;
    update();
}

void TextLabel::setAlignment(Qt::Alignment alignment)
{
    m_alignment = alignment & Qt::AlignHorizontal_Mask;
    rebuild();
}

bool TextLabel::hasHeightForWidth() const
{
    return true;
}

int TextLabel::heightForWidth(int width) const
{
    m_block.layOut(width);
    return m_block.height();
}

QSize TextLabel::sizeHint() const
{
    const int width = std::min(m_block.naturalWidth(), widestHint);
    return {width, heightForWidth(width)};
}

QSize TextLabel::minimumSizeHint() const
{
    return {std::min(m_block.naturalWidth(), 2 * fontMetrics().height()), lineHeight(font())};
}

void TextLabel::changeEvent(QEvent *event)
{
    if (event->type() == QEvent::FontChange)
        rebuild();
    QWidget::changeEvent(event);
}

void TextLabel::paintEvent(QPaintEvent *)
{
    m_block.layOut(width());
    QPainter painter(this);
    m_block.paint(painter, {}, m_color(palette()));
}

void TextLabel::resizeEvent(QResizeEvent *)
{
    layOut();
}

void TextLabel::rebuild()
{
    m_block = TextBlock(m_text, font(), m_maximumLines, m_alignment);
    if (testAttribute(Qt::WA_Resized) || isVisible())
        layOut(); // else once it has a size
    updateGeometry();
    update();
}

void TextLabel::layOut()
{
    m_block.layOut(width());
    setPlainToolTip(this, m_block.isCut() ? m_text : QString());
}
