#include "controls/SymbolLabel.h"

#include "controls/OneLine.h"
#include "look/Fonts.h"

#include <QPainter>

#include <algorithm>

namespace {

constexpr int symbolSize = 14;
constexpr int symbolGap = 5;

} // namespace

SymbolLabel::SymbolLabel(Symbol symbol, const QString &text, QWidget *parent)
    : BlockLabel(appFont(12), secondaryText, parent)
    , m_symbol(symbol)
{
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
    setFont(appFont(12));
    setText(text);
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

QSize SymbolLabel::sizeHint() const
{
    return {naturalWidth(), lineHeight(font())};
}

QSize SymbolLabel::minimumSizeHint() const
{
    const int shortest = indent() + fontMetrics().horizontalAdvance(QChar(0x2026));
    return {std::min(naturalWidth(), shortest), lineHeight(font())};
}

TextBlock SymbolLabel::block() const
{
    return TextBlock(m_wrapping ? text() : oneLine(text()), font(), m_wrapping ? 0 : 1);
}

int SymbolLabel::indent() const
{
    return scaled(symbolSize) + symbolGap;
}

void SymbolLabel::paintEvent(QPaintEvent *event)
{
    QPainter painter(this);
    paintSymbol(painter, m_symbol, QRectF(0, 0, scaled(symbolSize), lineHeight(font())),
                scaled(symbolSize), ink());
    painter.end();
    BlockLabel::paintEvent(event);
}
