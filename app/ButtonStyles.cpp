#include "app/ButtonStyles.h"

#include "look/Colors.h"
#include "look/FocusRing.h"
#include "look/Fonts.h"
#include "look/Painting.h"
#include "look/PressKeys.h"
#include "look/Reach.h"

#include <QPainter>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

constexpr int horizontalPadding = 12;
constexpr int verticalPadding = 6;
constexpr int radius = 6;
constexpr int symbolSize = 14;
constexpr int symbolGap = 5;

template <typename Style>
const Style &sharedStyle()
{
    static const Style style;
    return style;
}

} // namespace

void PrimaryButtonStyle::paintBackground(QPainter &painter, const QRectF &rect,
                                         const QPalette &palette, bool isPressed) const
{
    fillRounded(painter, rect, radius, isPressed ? accentPressed(palette) : accent(palette));
}

QColor PrimaryButtonStyle::labelColor(const QPalette &palette) const
{
    return accentText(palette);
}

void SecondaryButtonStyle::paintBackground(QPainter &painter, const QRectF &rect,
                                           const QPalette &palette, bool isPressed) const
{
    fillRounded(painter, rect, radius, buttonLift(palette));
    fillRounded(painter, rect, radius, isPressed ? buttonPressed(palette) : buttonFill(palette));
    strokeRounded(painter, rect, radius, buttonLine(palette));
}

QColor SecondaryButtonStyle::labelColor(const QPalette &palette) const
{
    return primaryText(palette);
}

StyledButton::StyledButton(const ButtonStyle &style, const QString &text, QWidget *parent)
    : QPushButton(parent)
    , m_style(style)
{
    setAutoDefault(false);
    setFocusPolicy(Qt::StrongFocus);
    setFont(appFont(13, style.labelWeight()));
    setLabel(text);
    pressWithReturn(this);
    new FocusRing(this, radius, ringGap);
}

void StyledButton::setLabel(const QString &text)
{
    m_label = text;
    setText(QString(text).replace(u'&', u"&&"_s));
    setAccessibleName(text);
    updateToolTip();
}

void StyledButton::setSymbol(Symbol symbol)
{
    m_symbol = symbol;
    updateGeometry();
    updateToolTip();
    update();
}

void StyledButton::setDestructive(bool destructive)
{
    m_destructive = destructive;
    update();
}

QSize StyledButton::sizeHint() const
{
    const int labelHeight = std::max(scaled(16), fontMetrics().height());
    return {contentWidth() + 2 * horizontalPadding, labelHeight + 2 * verticalPadding};
}

QSize StyledButton::minimumSizeHint() const
{
    return sizeHint();
}

void StyledButton::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    if (!looksDisabled(this)) {
        paintButton(painter);
        return;
    }
    // Fill and label fade as one, not each through the other.
    QPixmap whole(size() * devicePixelRatioF());
    whole.setDevicePixelRatio(devicePixelRatioF());
    whole.fill(Qt::transparent);
    QPainter layer(&whole);
    layer.setFont(font());
    paintButton(layer);
    layer.end();
    painter.setOpacity(disabledOpacity);
    painter.drawPixmap(0, 0, whole);
}

void StyledButton::resizeEvent(QResizeEvent *event)
{
    QPushButton::resizeEvent(event);
    updateToolTip();
}

void StyledButton::showEvent(QShowEvent *event)
{
    QPushButton::showEvent(event);
    updateToolTip();
}

int StyledButton::symbolWidth() const
{
    return m_symbol ? scaled(symbolSize) + symbolGap : 0;
}

int StyledButton::contentWidth() const
{
    return symbolWidth() + qCeil(QFontMetricsF(font()).horizontalAdvance(m_label));
}

void StyledButton::paintButton(QPainter &painter) const
{
    m_style.paintBackground(painter, rect(), palette(), isDown());
    const QColor color = m_destructive ? red(palette()) : m_style.labelColor(palette());
    const int room = width() - 2 * horizontalPadding;
    const int used = std::min(contentWidth(), room);
    QRect label(horizontalPadding + (room - used) / 2, 0, used, height());
    if (m_symbol) {
        const int side = scaled(symbolSize);
        paintSymbol(painter, *m_symbol, QRectF(label.left(), 0, side, height()), side, color);
        label.setLeft(label.left() + symbolWidth());
    }
    painter.setPen(color);
    painter.drawText(label, Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine,
                     QFontMetricsF(font()).elidedText(m_label, Qt::ElideRight, label.width()));
}

void StyledButton::updateToolTip()
{
    // To measure the label loads its font, which one that is not shown need not do.
    if (!isVisible())
        return;
    const bool isCut = contentWidth() > width() - 2 * horizontalPadding;
    setPlainToolTip(this, isCut ? m_label : QString());
    // Left empty, it would be read from the tooltip, with that one's markup.
    setAccessibleDescription(isCut ? m_label : QString());
}

PrimaryButton::PrimaryButton(const QString &text, QWidget *parent)
    : StyledButton(sharedStyle<PrimaryButtonStyle>(), text, parent)
{
}

SecondaryButton::SecondaryButton(const QString &text, QWidget *parent)
    : StyledButton(sharedStyle<SecondaryButtonStyle>(), text, parent)
{
}
