#include "sectionlist/SectionListRows.h"

#include "sectionlist/SectionListRow.h"

#include <algorithm>
#include <cstddef>
#include <functional>
#include <utility>

namespace {

constexpr size_t mostSpare = 6;

bool hasFocusWithin(const QWidget *widget)
{
    const auto *focus = widget->window()->focusWidget();
    return focus && (focus == widget || widget->isAncestorOf(focus));
}

} // namespace

SectionListRows::SectionListRows(std::function<SectionListRow *()> make)
    : m_make(std::move(make))
{
}

SectionListRow *SectionListRows::find(int row) const
{
    const auto it = m_bound.find(row);
    return it == m_bound.end() ? nullptr : it->second.widget;
}

std::optional<int> SectionListRows::rowOf(const QObject *object) const
{
    for (; object; object = object->parent()) {
        for (const auto &[row, bound] : m_bound) {
            if (bound.widget == object)
                return row;
        }
    }
    return {};
}

SectionListRows::Bound &SectionListRows::bind(int row, const SectionListContent &content)
{
    const auto it = m_bound.find(row);
    if (it != m_bound.end())
        return it->second;
    const QString id = content.rowId(row);
    auto [widget, formerId] = take(id);
    const bool same = widget && formerId == id;
    if (!widget)
        widget = m_make();
    auto &bound = m_bound[row];
    bound = {widget, id, false, same};
    content.fill(*widget, row);
    return bound;
}

SectionListRow *SectionListRows::read(int row, const SectionListContent &content)
{
    if (auto *widget = find(row))
        return widget;
    if (!m_read) {
        m_read = m_make();
        m_read->hide(); // or it would appear along with a list that is hidden now
    }
    content.fill(*m_read, row);
    return m_read;
}

void SectionListRows::releaseOutside(const SectionListFlow::Range &range, std::optional<int> pinned)
{
    for (auto it = m_bound.begin(); it != m_bound.end();) {
        const bool within = it->first >= range.first && it->first <= range.last;
        if (within || it->first == pinned) {
            ++it;
            continue;
        }
        m_spare.push_back({it->second.widget, it->second.id});
        it = m_bound.erase(it);
    }
}

void SectionListRows::releaseAll()
{
    releaseOutside({}, {});
}

void SectionListRows::hideSpare()
{
    for (size_t i = m_spare.size(); i-- > 0;) {
        auto *widget = m_spare[i].widget;
        widget->hide();
        if (m_spare.size() <= mostSpare)
            continue;
        widget->deleteLater();
        m_spare.erase(m_spare.begin() + std::ptrdiff_t(i));
    }
}

SectionListRows::Spare SectionListRows::take(const QString &id)
{
    auto found = std::find_if(m_spare.begin(), m_spare.end(),
                              [&id](const Spare &spare) { return spare.id == id; });
    if (found == m_spare.end()) {
        found = std::find_if(m_spare.begin(), m_spare.end(),
                             [](const Spare &spare) { return !hasFocusWithin(spare.widget); });
    }
    if (found == m_spare.end())
        return {};
    const Spare spare = *found;
    m_spare.erase(found);
    return spare;
}
