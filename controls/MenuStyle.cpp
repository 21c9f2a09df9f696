#include "controls/MenuStyle.h"

#include "controls/PopupCard.h"
#include "look/Colors.h"
#include "look/Fonts.h"
#include "look/Painting.h"
#include "look/Symbols.h"

#include <QPainter>
#include <QStyleOptionMenuItem>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

constexpr int padding = 4;
constexpr int itemHeight = 26;
constexpr int itemRadius = 5;
constexpr int textLeft = 28;
constexpr int textRight = 12;
constexpr int checkmarkSize = 14;
constexpr int checkmarkLeft = 8;

QString withoutDoubling(QString text)
{
    return text.replace(u"&&"_s, u"&"_s);
}

void drawItem(const QStyleOptionMenuItem &item, QPainter &painter)
{
    const QRect &rect = item.rect;
    if (item.state & QStyle::State_Selected)
        fillRounded(painter, rect, itemRadius, menuHover(item.palette));
    if (item.checked) {
        const int size = scaled(checkmarkSize);
        const QRectF room(rect.left() + checkmarkLeft, rect.top(), size, rect.height());
        paintSymbol(painter, Symbol::Checkmark, room, size, accentInk(item.palette));
    }
    painter.setFont(item.font);
    painter.setPen(primaryText(item.palette));
    painter.drawText(rect.adjusted(textLeft, 0, 0, 0),
                     Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine,
                     withoutDoubling(item.text));
}

} // namespace

MenuStyle::MenuStyle(bool isComposited)
    : m_isComposited(isComposited)
{
}

int MenuStyle::pixelMetric(PixelMetric metric, const QStyleOption *option,
                           const QWidget *widget) const
{
    switch (metric) {
    case PM_MenuPanelWidth:
    case PM_MenuDesktopFrameWidth:
        return 0;
    case PM_MenuHMargin:
    case PM_MenuVMargin:
        return padding;
    default:
        return QCommonStyle::pixelMetric(metric, option, widget);
    }
}

int MenuStyle::styleHint(StyleHint hint, const QStyleOption *option, const QWidget *widget,
                         QStyleHintReturn *more) const
{
    switch (hint) {
    case SH_Menu_MouseTracking:
    case SH_Menu_KeyboardSearch:
    case SH_Menu_SpaceActivatesItem:
    case SH_Menu_Scrollable:
    case SH_Menu_SelectionWrap:
        return 1;
    default:
        return QCommonStyle::styleHint(hint, option, widget, more);
    }
}

QSize MenuStyle::sizeFromContents(ContentsType type, const QStyleOption *option, const QSize &size,
                                  const QWidget *widget) const
{
    const auto *item = qstyleoption_cast<const QStyleOptionMenuItem *>(option);
    if (type != CT_MenuItem || !item)
        return QCommonStyle::sizeFromContents(type, option, size, widget);
    const QFontMetricsF metrics(item->font);
    const int text = qCeil(metrics.horizontalAdvance(withoutDoubling(item->text)));
    return {textLeft + text + textRight, std::max(scaled(itemHeight), qCeil(metrics.height()))};
}

void MenuStyle::drawPrimitive(PrimitiveElement element, const QStyleOption *option,
                              QPainter *painter, const QWidget *widget) const
{
    if (element == PE_PanelMenu)
        paintPopupCard(*painter, option->rect, option->palette, m_isComposited);
    else if (element != PE_FrameMenu)
        QCommonStyle::drawPrimitive(element, option, painter, widget);
}

void MenuStyle::drawControl(ControlElement element, const QStyleOption *option, QPainter *painter,
                            const QWidget *widget) const
{
    const auto *item = qstyleoption_cast<const QStyleOptionMenuItem *>(option);
    if (element == CE_MenuItem && item)
        drawItem(*item, *painter);
    else if (element != CE_MenuEmptyArea)
        QCommonStyle::drawControl(element, option, painter, widget);
}
