#include "controls/Menu.h"

#include "controls/Colors.h"
#include "controls/Compositing.h"
#include "controls/Fonts.h"
#include "controls/Painting.h"
#include "controls/PopupCard.h"
#include "controls/PopupPlacement.h"
#include "controls/Symbols.h"

#include <QCommonStyle>
#include <QMouseEvent>
#include <QPainter>
#include <QScreen>
#include <QStyleOptionMenuItem>

#include <algorithm>

namespace {

constexpr int gapToAnchor = 4;
constexpr int padding = 4;
constexpr int itemHeight = 26;
constexpr int itemRadius = 5;
constexpr int textLeft = 28;
constexpr int textRight = 12;
constexpr int checkmarkSize = 14;
constexpr int checkmarkLeft = 8;

QString withAmpersands(QString text)
{
    return text.replace(u'&', QStringLiteral("&&"));
}

QString withoutDoubling(QString text)
{
    return text.replace(QStringLiteral("&&"), QStringLiteral("&"));
}

class MenuStyle final : public QCommonStyle {
public:
    explicit MenuStyle(bool isComposited)
        : m_isComposited(isComposited)
    {
    }

    int pixelMetric(PixelMetric metric, const QStyleOption *option,
                    const QWidget *widget) const override
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

    int styleHint(StyleHint hint, const QStyleOption *option, const QWidget *widget,
                  QStyleHintReturn *more) const override
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

    QSize sizeFromContents(ContentsType type, const QStyleOption *option, const QSize &size,
                           const QWidget *widget) const override
    {
        const auto *item = qstyleoption_cast<const QStyleOptionMenuItem *>(option);
        if (type != CT_MenuItem || !item)
            return QCommonStyle::sizeFromContents(type, option, size, widget);
        const QFontMetricsF metrics(item->font);
        return {textLeft + qCeil(metrics.horizontalAdvance(withoutDoubling(item->text)))
                    + textRight,
                std::max(scaled(itemHeight), qCeil(metrics.height()))};
    }

    void drawPrimitive(PrimitiveElement element, const QStyleOption *option, QPainter *painter,
                       const QWidget *widget) const override
    {
        if (element == PE_PanelMenu)
            paintPopupCard(*painter, option->rect, option->palette, m_isComposited);
        else if (element != PE_FrameMenu)
            QCommonStyle::drawPrimitive(element, option, painter, widget);
    }

    void drawControl(ControlElement element, const QStyleOption *option, QPainter *painter,
                     const QWidget *widget) const override
    {
        const auto *item = qstyleoption_cast<const QStyleOptionMenuItem *>(option);
        if (element == CE_MenuItem && item)
            drawItem(*item, *painter);
        else if (element != CE_MenuEmptyArea)
            QCommonStyle::drawControl(element, option, painter, widget);
    }

private:
    static void drawItem(const QStyleOptionMenuItem &item, QPainter &painter)
    {
        const QRect &rect = item.rect;
        if (item.state & State_Selected)
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

    bool m_isComposited;
};

} // namespace

Menu::Menu(QWidget *anchor)
    : QMenu(anchor)
    , m_anchor(anchor)
    , m_isComposited(isComposited())
{
    auto *ownStyle = new MenuStyle(m_isComposited);
    ownStyle->setParent(this);
    setStyle(ownStyle);
    setFont(appFont(13));
    setAttribute(Qt::WA_TranslucentBackground, m_isComposited);
    setWindowFlag(Qt::FramelessWindowHint);
    setWindowFlag(Qt::NoDropShadowWindowHint);
    setContentsMargins(popupMargins(m_isComposited));
}

void Menu::setItems(const QList<MenuItem> &items)
{
    // What was chosen is often marked at once, while its own signal is still on its way.
    const auto sameText = [](const MenuItem &item, const QAction *action) {
        return withAmpersands(item.text) == action->text();
    };
    const auto old = actions();
    if (!std::equal(items.begin(), items.end(), old.begin(), old.end(), sameText))
        addItems(items);
    for (qsizetype i = 0; i < items.size(); ++i)
        actions().at(i)->setChecked(items[i].isChecked);
}

void Menu::addItems(const QList<MenuItem> &items)
{
    clear();
    for (qsizetype i = 0; i < items.size(); ++i) {
        auto *action = addAction(withAmpersands(items[i].text));
        action->setCheckable(true);
        connect(action, &QAction::triggered, this,
                [this, index = static_cast<int>(i)] { Q_EMIT chosen(index); });
    }
}

void Menu::open(OpenedBy by)
{
    const QMargins margins = popupMargins(m_isComposited);
    setMinimumWidth(m_anchor->width() + margins.left() + margins.right());
    popup(placeOfCard().topLeft());
    if (by == OpenedBy::Mouse)
        return;
    const auto items = actions();
    const auto checked = std::find_if(items.begin(), items.end(),
                                      [](const QAction *item) { return item->isChecked(); });
    if (!items.isEmpty())
        setActiveAction(checked == items.end() ? items.first() : *checked);
}

void Menu::mousePressEvent(QMouseEvent *event)
{
    const QPoint at = event->globalPosition().toPoint();
    // A press on what opened the menu closes it; passed on, it would open it again.
    if (m_anchor->rect().contains(m_anchor->mapFromGlobal(at)))
        setAttribute(Qt::WA_NoMouseReplay);
    // What lies between the card and the end of its shadow is not the menu for anybody.
    const QRect card = rect().marginsRemoved(popupMargins(m_isComposited));
    if (rect().contains(event->position().toPoint()) && !card.contains(event->position().toPoint()))
        hide();
    else
        QMenu::mousePressEvent(event);
}

void Menu::showEvent(QShowEvent *event)
{
    // The toolkit keeps the shadow on the screen as well, which moves the card away from the edge.
    move(placeOfCard().topLeft()
         - QPoint(popupMargins(m_isComposited).left(), popupMargins(m_isComposited).top()));
    QMenu::showEvent(event);
}

QRect Menu::placeOfCard() const
{
    const QRect anchor(m_anchor->mapToGlobal(QPoint()), m_anchor->size());
    const QSize card = sizeHint().shrunkBy(popupMargins(m_isComposited));
    return popupPlace(anchor, card, PopupAlignment::Left, gapToAnchor,
                      m_anchor->screen()->availableGeometry());
}
