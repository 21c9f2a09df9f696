#include "sectionlist/SectionListHeading.h"

#include "look/Colors.h"
#include "look/Fonts.h"
#include "sectionlist/SectionListMetrics.h"

#include <QPainter>

#include <algorithm>

namespace Metrics = SectionListMetrics;

SectionListHeading::SectionListHeading(QWidget *parent)
    : QWidget(parent)
{
    setAttribute(Qt::WA_OpaquePaintEvent);
}

void SectionListHeading::setTitle(const QString &title)
{
    if (title == m_title)
        return;
    m_title = title;
    update();
}

QFont SectionListHeading::font()
{
    return appFont(13, QFont::DemiBold);
}

int SectionListHeading::height()
{
    return std::max(Metrics::headingHeight, lineHeight(font()) + Metrics::headingPadding);
}

void SectionListHeading::paintTitle(QPainter &painter, const QRect &rect, const QString &title,
                                    const QPalette &palette)
{
    const auto text = rect.adjusted(Metrics::textLeft, Metrics::headingDrop, -Metrics::textRight,
                                    Metrics::headingDrop);
    painter.setFont(font());
    painter.setPen(secondaryText(palette));
    painter.drawText(text, Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine,
                     QFontMetrics(painter.font()).elidedText(title, Qt::ElideRight, text.width()));
}

void SectionListHeading::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.fillRect(rect(), surfaceColor(palette()));
    painter.fillRect(0, rect().bottom(), width(), 1, hairline(palette()));
    const auto inRows = rect().adjusted(Metrics::edge, -Metrics::headingDrop, -Metrics::gutter,
                                        -Metrics::headingDrop);
    paintTitle(painter, inRows, m_title, palette());
}
