#include "controls/Menu.h"

#include "controls/MenuStyle.h"
#include "controls/PopupCard.h"
#include "look/Fonts.h"
#include "look/PressKeys.h"

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
    , m_card(new PopupCard(this, anchor, PopupAlignment::Left, gapToAnchor))
{
    auto *ownStyle = new MenuStyle(m_card->isComposited());
    ownStyle->setParent(this);
    setStyle(ownStyle);
    setFont(appFont(13));
    setContentsMargins(m_card->margins());
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
    const QMargins margins = m_card->margins();
    setMinimumWidth(m_anchor->width() + margins.left() + margins.right());
    popup(m_card->placeOfCard(sizeHint()).topLeft());
    if (by == OpenedBy::Mouse)
        return;
    const auto items = actions();
    const auto checked = std::find_if(items.begin(), items.end(),
                                      [](const QAction *item) { return item->isChecked(); });
    if (!items.isEmpty())
        setActiveAction(checked == items.end() ? items.first() : *checked);
}

void Menu::showEvent(QShowEvent *event)
{
    // The toolkit keeps the shadow on the screen as well, which moves the card away from the edge.
    move(m_card->placeOfWindow(sizeHint()).topLeft());
    QMenu::showEvent(event);
}
