#include "controls/SymbolLabel.h"

#include "look/Accessibility.h"
#include "look/Fonts.h"
#include "look/Painting.h"

#include <QEvent>
#include <QPainter>

namespace {

constexpr int symbolSize = 14;
constexpr int symbolGap = 5;

int textLeft()
{
    return scaled(symbolSize) + symbolGap;
}

} // namespace

SymbolLabel::SymbolLabel(Symbol symbol, const QString &text, QWidget *parent)
    : QWidget(parent)
    , m_symbol(symbol)
    , m_block({}, appFont(12))
{
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
    setAccessibleRole(this, QAccessible::StaticText);
    setFont(appFont(12));
    setText(text);
}

void SymbolLabel::setText(const QString &text)
{
    if (text == m_text)
        return;
    m_text = text;
    setAccessibleName(text);
    rebuild();
}

void SymbolLabel::setColor(ColorRole color)
{
    m_color = color;
    update();
}

void SymbolLabel::setWrapping(bool wrapping)
{
    m_wrapping = wrapping;
    QSizePolicy policy(QSizePolicy::Preferred,
                       wrapping ? QSizePolicy::Preferred : QSizePolicy::Fixed);
    policy.setHeightForWidth(wrapping);
    setSizePolicy(policy);
    rebuild();
}

int SymbolLabel::naturalWidth() const
{
    return textLeft() + m_block.naturalWidth();
}

int SymbolLabel::heightForWidth(int width) const
{
    m_block.layOut(width - textLeft());
    return m_block.height();
}

QSize SymbolLabel::sizeHint() const
{
    return {naturalWidth(), lineHeight(font())};
}

QSize SymbolLabel::minimumSizeHint() const
{
    const int shortest = textLeft() + fontMetrics().horizontalAdvance(QChar(0x2026));
    return {std::min(naturalWidth(), shortest), lineHeight(font())};
}

void SymbolLabel::changeEvent(QEvent *event)
{
    if (event->type() == QEvent::FontChange)
        rebuild();
    QWidget::changeEvent(event);
}

void SymbolLabel::paintEvent(QPaintEvent *)
{
    m_block.layOut(width() - textLeft());
    const QColor color = m_color(palette());
    QPainter painter(this);
    paintSymbol(painter, m_symbol, QRectF(0, 0, scaled(symbolSize), lineHeight(font())),
                scaled(symbolSize), color);
    m_block.paint(painter, QPointF(textLeft(), 0), color);
}

void SymbolLabel::resizeEvent(QResizeEvent *)
{
    layOut();
}

void SymbolLabel::rebuild()
{
    // A label of one line shows a text's line breaks as spaces rather than end at the first.
    m_block = TextBlock(m_wrapping ? m_text : m_text.simplified(), font(), m_wrapping ? 0 : 1);
    if (testAttribute(Qt::WA_Resized) || isVisible())
        layOut(); // else once it has a size
    updateGeometry();
    update();
}

void SymbolLabel::layOut()
{
    m_block.layOut(width() - textLeft());
    setPlainToolTip(this, m_block.isCut() ? m_text : QString());
}
