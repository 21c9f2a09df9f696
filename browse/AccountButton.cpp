#include "browse/AccountButton.h"

#include "look/Colors.h"
#include "look/FocusRing.h"
#include "look/Fonts.h"
#include "look/Painting.h"
#include "look/PressKeys.h"
#include "look/Symbols.h"

#include <QEvent>
#include <QFontMetricsF>
#include <QPainter>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

constexpr int paddingX = 6;
constexpr int paddingY = 4;
constexpr int symbolSize = 18;
constexpr int gap = 5;
constexpr int radius = 6;
constexpr int widest = 180;

} // namespace

AccountButton::AccountButton(QWidget *parent)
    : QAbstractButton(parent)
{
    setFont(appFont(11));
    setAccessibleName(u"Compte"_s);
    setAccessibleRole(this, QAccessible::Button);
    setFocusPolicy(Qt::TabFocus);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    pressWithReturn(this);
    new FocusRing(this, radius);
}

void AccountButton::setEmail(const QString &email)
{
    if (email == m_email)
        return;
    m_email = email;
    setAccessibleDescription(email);
    fit();
}

void AccountButton::setRoom(int width)
{
    if (width == m_room)
        return;
    m_room = width;
    fit();
}

void AccountButton::setOpen(bool isOpen)
{
    if (isOpen == m_isOpen)
        return;
    m_isOpen = isOpen;
    update();
}

QSize AccountButton::sizeHint() const
{
    if (m_email.isEmpty())
        return {naturalWidth(), 2 * paddingY + scaled(symbolSize)};
    return {std::min(naturalWidth(), widestHere()),
            2 * paddingY + std::max(scaled(symbolSize), lineHeight(font()))};
}

QSize AccountButton::minimumSizeHint() const
{
    return sizeHint();
}

void AccountButton::changeEvent(QEvent *event)
{
    if (event->type() == QEvent::FontChange)
        fit();
    QAbstractButton::changeEvent(event);
}

void AccountButton::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    if (m_isOpen || isDown()) {
        fillRounded(painter, rect(), radius, accountOpen(palette()));
    } else {
        fillRounded(painter, rect(), radius, accountLift(palette()));
        fillRounded(painter, rect(), radius, accountFill(palette()));
    }
    strokeRounded(painter, rect(), radius, controlEdge(palette()));
    const QRectF symbol(paddingX, (height() - symbolSize) / 2.0, symbolSize, symbolSize);
    paintSymbol(painter, Symbol::Person, symbol, symbolSize, secondaryText(palette()));
    if (m_email.isEmpty())
        return;
    const int x = paddingX + symbolSize + gap;
    const QRect room(x, 0, width() - x - paddingX, height());
    painter.setPen(secondaryText(palette()));
    painter.drawText(room, Qt::AlignVCenter | Qt::AlignLeft | Qt::TextSingleLine | Qt::TextDontClip,
                     isCut()
                         ? QFontMetricsF(font()).elidedText(m_email, Qt::ElideRight, room.width())
                         : m_email);
}

int AccountButton::naturalWidth() const
{
    const int symbol = 2 * paddingX + symbolSize;
    // Rounded up: a width that is a fraction short cuts a text that fits.
    return m_email.isEmpty()
        ? symbol
        : symbol + gap + qCeil(QFontMetricsF(font()).horizontalAdvance(m_email));
}

bool AccountButton::isCut() const
{
    return !m_email.isEmpty() && naturalWidth() > widestHere();
}

int AccountButton::widestHere() const
{
    const int shortest = 2 * paddingX + symbolSize + gap + 2 * fontMetrics().height();
    return std::max(shortest, std::min(widest, m_room));
}

void AccountButton::fit()
{
    setPlainToolTip(this, isCut() ? m_email : QString());
    updateGeometry();
    update();
}
