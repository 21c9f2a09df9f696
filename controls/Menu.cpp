#include "controls/Menu.h"

#include "controls/MenuStyle.h"
#include "controls/PopupCard.h"
#include "controls/PopupPlacement.h"
#include "look/Compositing.h"
#include "look/Fonts.h"
#include "look/PressKeys.h"

#include <QMouseEvent>
#include <QScreen>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

constexpr int gapToAnchor = 4;

QString withAmpersands(QString text)
{
    return text.replace(u'&', u"&&"_s);
}

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
    pressOnce(this);
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
    int index = 0;
    for (const MenuItem &item : items) {
        auto *action = addAction(withAmpersands(item.text));
        action->setCheckable(true);
        connect(action, &QAction::triggered, this, [this, index] { Q_EMIT chosen(index); });
        ++index;
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
