#include "browse/TagChips.h"

#include "browse/TagPalette.h"
#include "look/Accessibility.h"
#include "look/Colors.h"
#include "look/Fonts.h"
#include "look/Painting.h"

#include <QEvent>
#include <QFontMetrics>
#include <QPainter>

#include <algorithm>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

constexpr int paddingX = 6;
constexpr int paddingY = 2;
constexpr int spacing = 6;
constexpr int radius = 6;
constexpr float fillOpacity = 0.68f;
constexpr float textOpacity = 0.78f;
/// No window is wider than so many characters: what follows is not even measured.
constexpr qsizetype longestShown = 1000;

QString ellipsis()
{
    return QString(QChar(0x2026));
}

} // namespace

TagChips::TagChips(QWidget *parent)
    : QWidget(parent)
{
    setFont(appFont(11, QFont::Medium));
    setAccessibleRole(this, QAccessible::StaticText);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
}

void TagChips::setTags(const QStringList &tags)
{
    if (tags == m_tags)
        return;
    m_tags = tags;
    m_spoken = tags.join(u", "_s);
    setAccessibleName(m_spoken);
    arrange();
    updateGeometry();
}

QSize TagChips::sizeHint() const
{
    return {0, lineHeight(font()) + 2 * paddingY};
}

QSize TagChips::minimumSizeHint() const
{
    return sizeHint();
}

void TagChips::changeEvent(QEvent *event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::FontChange)
        arrange();
}

void TagChips::resizeEvent(QResizeEvent *)
{
    arrange();
}

void TagChips::arrange()
{
    const QFontMetrics metrics(font());
    const int dots = metrics.horizontalAdvance(ellipsis());
    m_chips.clear();
    m_ellipsisX = -1;
    int x = 0;
    for (qsizetype i = 0; i < m_tags.size(); ++i) {
        QString text = m_tags.at(i).left(longestShown);
        int chipWidth = metrics.horizontalAdvance(text) + 2 * paddingX;
        // Every chip but the last must leave room for the ellipsis of those after it.
        const int after = i + 1 < m_tags.size() ? spacing + dots : 0;
        if (x + chipWidth + after > width()) {
            if (i > 0) {
                m_ellipsisX = x;
                break;
            }
            const int room = std::max(0, width() - after - 2 * paddingX);
            text = metrics.elidedText(text, Qt::ElideRight, room);
            chipWidth = std::min(width() - after, metrics.horizontalAdvance(text) + 2 * paddingX);
        }
        m_chips.append(
            {text, TagPalette::color(m_tags.at(i), TagPalette::processSeed()), x, chipWidth});
        x += chipWidth + spacing;
    }
    const bool isCut =
        m_ellipsisX >= 0 || (!m_chips.isEmpty() && m_chips.first().text != m_tags.first());
    setPlainToolTip(this, isCut ? m_spoken : QString());
    update();
}

void TagChips::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    for (const Chip &chip : std::as_const(m_chips)) {
        const QRectF shape(chip.x, 0, chip.width, height());
        QColor fill = chip.color;
        fill.setAlphaF(fillOpacity);
        // The plate makes the chip look the same on a plain, a hovered and a selected row, and its
        // text readable in the dark.
        fillRounded(painter, shape, radius, chipPlate(palette()));
        fillRounded(painter, shape, radius, fill);
        painter.setPen(QColor::fromRgbF(0, 0, 0, textOpacity));
        painter.drawText(shape.adjusted(paddingX, 0, 0, 0),
                         Qt::AlignVCenter | Qt::AlignLeft | Qt::TextSingleLine, chip.text);
    }
    if (m_ellipsisX >= 0) {
        painter.setPen(secondaryText(palette()));
        painter.drawText(QRect(m_ellipsisX, 0, width() - m_ellipsisX, height()),
                         Qt::AlignVCenter | Qt::AlignLeft, ellipsis());
    }
}
