#include "controls/TabButton.h"

#include "look/Colors.h"
#include "look/Fonts.h"
#include "look/KeyboardFocus.h"
#include "look/Painting.h"

#include <QKeyEvent>
#include <QPainter>

#include <algorithm>

namespace {

constexpr int padding = 12;
constexpr int stripHeight = 36;
constexpr int clearOfLabel = 18; ///< above and below the line of text, together
constexpr int underline = 2;

} // namespace

TabButton::TabButton(const QString &title, QWidget *parent)
    : QAbstractButton(parent)
    , m_title(title)
    , m_focus(new KeyboardFocus(this))
{
    setAttribute(Qt::WA_Hover);
    setCheckable(true);
    setFocusPolicy(Qt::StrongFocus);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    setAccessibleName(title);
    setAccessibleRole(this, QAccessible::PageTab);
}

QSize TabButton::sizeHint() const
{
    // As wide as its semibold label, chosen or not: choosing a tab moves nothing.
    const QFontMetricsF metrics(appFont(13, QFont::DemiBold));
    // Large type makes the line higher, and takes no more of a small window for what is around it.
    return {qRound(metrics.horizontalAdvance(m_title)) + 2 * padding,
            std::max(stripHeight, lineHeight(appFont(13, QFont::DemiBold)) + clearOfLabel)};
}

void TabButton::keyPressEvent(QKeyEvent *event)
{
    // A button takes the arrows for itself; here they are the strip's.
    if (event->key() == Qt::Key_Space || event->key() == Qt::Key_Select)
        QAbstractButton::keyPressEvent(event);
    else
        event->ignore();
}

void TabButton::paintEvent(QPaintEvent *)
{
    const bool strong = isChecked() || underMouse();
    const QRect label = rect().adjusted(padding, 0, -padding, 0);
    QPainter painter(this);
    painter.setFont(appFont(13, isChecked() ? QFont::DemiBold : QFont::Medium));
    painter.setPen(strong ? primaryText(palette()) : secondaryText(palette()));
    painter.drawText(
        label, Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine | Qt::TextDontClip, m_title);
    if (isChecked()) {
        const QRect line(label.left(), rect().bottom() + 1 - underline, label.width(), underline);
        fillRounded(painter, line, 1, accentInk(palette()));
    }
    if (m_focus->isVisible())
        paintRing(painter, rect().adjusted(5, 5, -5, -5), 6, accentInk(palette()));
}
