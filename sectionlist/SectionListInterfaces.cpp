#include "sectionlist/SectionListInterfaces.h"

#include "sectionlist/SectionListReader.h"

#include <optional>
#include <utility>

namespace {

bool isInView(const SectionList *list, const QRect &rect)
{
    return list && rect.intersects(QRect(list->mapToGlobal(QPoint()), list->size()));
}

} // namespace

SectionListInterface::SectionListInterface(SectionList *list)
    : QAccessibleWidget(list, QAccessible::List)
{
}

SectionListInterface::~SectionListInterface()
{
    for (const auto id : std::as_const(m_items))
        QAccessible::deleteAccessibleInterface(id);
}

int SectionListInterface::childCount() const
{
    return SectionListReader(*list()).itemCount();
}

QAccessibleInterface *SectionListInterface::child(int index) const
{
    const SectionListReader reader(*list());
    if (index < 0 || index >= reader.itemCount())
        return nullptr;
    const auto row = reader.rowOfItem(index);
    auto *widget = row ? list()->widgetOf(*row) : nullptr;
    return widget ? QAccessible::queryAccessibleInterface(widget) : item(index);
}

int SectionListInterface::indexOfChild(const QAccessibleInterface *child) const
{
    if (const auto *item = dynamic_cast<const SectionListItemInterface *>(child))
        return item->index();
    const SectionListReader reader(*list());
    const auto row = child ? reader.rowOfWidget(child->object()) : std::nullopt;
    return row ? reader.itemOfRow(*row) : -1;
}

QAccessibleInterface *SectionListInterface::childAt(int x, int y) const
{
    const auto row = list()->rowAt(list()->mapFromGlobal(QPoint(x, y)));
    return row ? child(SectionListReader(*list()).itemOfRow(*row)) : nullptr;
}

SectionList *SectionListInterface::list() const
{
    return static_cast<SectionList *>(widget());
}

QAccessibleInterface *SectionListInterface::item(int index) const
{
    const int number = SectionListReader(*list()).contentNumber();
    if (number != m_contentNumber) {
        for (const auto id : std::as_const(m_items))
            QAccessible::deleteAccessibleInterface(id);
        m_items.clear();
        m_contentNumber = number;
    }
    auto it = m_items.find(index);
    if (it == m_items.end()) {
        auto *made = new SectionListItemInterface(list(), index);
        it = m_items.insert(index, QAccessible::registerAccessibleInterface(made));
    }
    return QAccessible::accessibleInterface(*it);
}

SectionListRowInterface::SectionListRowInterface(SectionListRow *row)
    : QAccessibleWidget(row, QAccessible::ListItem)
{
}

QAccessibleInterface *SectionListRowInterface::parent() const
{
    return QAccessible::queryAccessibleInterface(SectionListReader::listOf(row()));
}

QAccessible::State SectionListRowInterface::state() const
{
    auto state = QAccessibleWidget::state();
    state.offscreen = !isInView(SectionListReader::listOf(row()), rect());
    state.focusable = true;
    state.selectable = true;
    state.selected = row()->isSelected();
    return state;
}

QStringList SectionListRowInterface::actionNames() const
{
    if (!row()->isEnabled())
        return {};
    return {pressAction(), setFocusAction()};
}

void SectionListRowInterface::doAction(const QString &action)
{
    if (!row()->isEnabled())
        return;
    auto *list = SectionListReader::listOf(row());
    const auto number = list ? SectionListReader(*list).rowOfWidget(row()) : std::nullopt;
    if (action == pressAction())
        row()->press();
    else if (action == setFocusAction() && number)
        SectionListReader(*list).giveFocus(*number);
}

SectionListRow *SectionListRowInterface::row() const
{
    return static_cast<SectionListRow *>(widget());
}

SectionListItemInterface::SectionListItemInterface(SectionList *list, int index)
    : m_list(list)
    , m_index(index)
{
}

bool SectionListItemInterface::isValid() const
{
    return m_list && m_index < SectionListReader(*m_list).itemCount();
}

QAccessibleInterface *SectionListItemInterface::parent() const
{
    return QAccessible::queryAccessibleInterface(m_list);
}

int SectionListItemInterface::childCount() const
{
    const auto *shown = shownRow();
    return shown ? shown->childCount() : 0;
}

QAccessibleInterface *SectionListItemInterface::child(int index) const
{
    const auto *shown = shownRow();
    return shown ? shown->child(index) : nullptr;
}

QRect SectionListItemInterface::rect() const
{
    return isValid() ? SectionListReader(*m_list).rectOfItem(m_index) : QRect();
}

QAccessible::Role SectionListItemInterface::role() const
{
    const bool isRow = isValid() && SectionListReader(*m_list).rowOfItem(m_index);
    return isRow ? QAccessible::ListItem : QAccessible::Heading;
}

QAccessible::State SectionListItemInterface::state() const
{
    QAccessible::State state;
    state.invalid = !isValid();
    if (state.invalid)
        return state;
    if (const auto *shown = shownRow())
        return shown->state();
    state.disabled = !m_list->isEnabled();
    state.offscreen = !isInView(m_list, rect());
    if (role() == QAccessible::ListItem) {
        state.focusable = true;
        state.selectable = true;
    }
    return state;
}

QString SectionListItemInterface::text(QAccessible::Text kind) const
{
    return isValid() ? SectionListReader(*m_list).textOfItem(m_index, kind) : QString();
}

void *SectionListItemInterface::interface_cast(QAccessible::InterfaceType type)
{
    const bool acts = type == QAccessible::ActionInterface && role() == QAccessible::ListItem;
    return acts ? static_cast<QAccessibleActionInterface *>(this) : nullptr;
}

QStringList SectionListItemInterface::actionNames() const
{
    if (!m_list || !m_list->isEnabled())
        return {};
    return {pressAction(), setFocusAction()};
}

void SectionListItemInterface::doAction(const QString &action)
{
    const auto row = isValid() ? SectionListReader(*m_list).rowOfItem(m_index) : std::nullopt;
    if (!row || !m_list->isEnabled())
        return;
    if (action == setFocusAction())
        SectionListReader(*m_list).giveFocus(*row);
    else if (action == pressAction())
        Q_EMIT m_list->rowActivated(*row);
}

/// The interface of the row's widget, while it has one.
QAccessibleInterface *SectionListItemInterface::shownRow() const
{
    const auto row = isValid() ? SectionListReader(*m_list).rowOfItem(m_index) : std::nullopt;
    auto *widget = row ? m_list->widgetOf(*row) : nullptr;
    return widget ? QAccessible::queryAccessibleInterface(widget) : nullptr;
}
