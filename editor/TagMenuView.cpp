#include "editor/TagMenuView.h"

#include "controls/Menu.h"

#include <utility>

using namespace Qt::StringLiterals;

TagMenuView::TagMenuView(const QString &name, const QStringList &tags, QWidget *parent)
    : PopupLabel(name, parent)
    , m_tags(tags)
{
    connect(menu(), &Menu::chosen, this,
            [this](int index) { Q_EMIT selectionChanged(m_selection.toggled(m_tags[index])); });
    setSelection({});
}

void TagMenuView::setSelection(const TagSet &selection)
{
    m_selection = selection;
    QList<MenuItem> items;
    for (const QString &tag : std::as_const(m_tags))
        items.append({tag, selection.contains(tag)});
    menu()->setItems(items);
    if (selection.isEmpty())
        setLabel(u"Choisir des tags"_s, secondaryText);
    else
        setLabel(selection.sorted().join(u", "_s));
}
