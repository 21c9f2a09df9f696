#include "sectionlist/SectionListReader.h"

#include "sectionlist/SectionList.h"
#include "sectionlist/SectionListBody.h"
#include "sectionlist/SectionListFocus.h"

SectionList *SectionListReader::listOf(const SectionListRow *row)
{
    auto *body = row->parentWidget();
    return body ? qobject_cast<SectionList *>(body->parentWidget()) : nullptr;
}

int SectionListReader::contentNumber() const
{
    return m_list.m_contentNumber;
}

int SectionListReader::itemCount() const
{
    const auto &offsets = m_list.m_body->flow().offsets;
    return offsets.rowCount() + offsets.sectionCount();
}

/// The last section whose heading is not after the item.
int SectionListReader::sectionOfItem(int item) const
{
    const auto &offsets = m_list.m_body->flow().offsets;
    int section = 0;
    int beyond = offsets.sectionCount();
    while (beyond - section > 1) {
        const int middle = (section + beyond) / 2;
        (offsets.firstRow(middle) + middle <= item ? section : beyond) = middle;
    }
    return section;
}

std::optional<int> SectionListReader::rowOfItem(int item) const
{
    const int section = sectionOfItem(item);
    const int row = item - section - 1;
    const bool isHeading = row < m_list.m_body->flow().offsets.firstRow(section);
    return isHeading ? std::nullopt : std::optional(row);
}

int SectionListReader::itemOfRow(int row) const
{
    return row + m_list.m_body->flow().offsets.sectionOf(row) + 1;
}

std::optional<int> SectionListReader::rowOfWidget(const QObject *widget) const
{
    return m_list.m_body->rows().rowOf(widget);
}

QRect SectionListReader::rectOfItem(int item) const
{
    const auto &flow = m_list.m_body->flow();
    const auto row = rowOfItem(item);
    const int top = row ? flow.offsets.top(*row) : flow.offsets.headingTop(sectionOfItem(item));
    const int height = row ? flow.offsets.height(*row) : flow.offsets.headingHeight();
    return {m_list.m_body->mapToGlobal(QPoint(0, top - flow.top())),
            QSize(m_list.m_body->width(), height)};
}

QString SectionListReader::textOfItem(int item, QAccessible::Text kind) const
{
    const bool isName = kind == QAccessible::Name;
    if (!isName && kind != QAccessible::Description)
        return {};
    if (const auto row = rowOfItem(item)) {
        const auto *widget = m_list.m_body->read(*row);
        return isName ? widget->accessibleName() : widget->accessibleDescription();
    }
    return isName ? m_list.m_body->content().sections[sectionOfItem(item)].title : QString();
}

void SectionListReader::giveFocus(int row) const
{
    m_list.m_focus->give(row, true);
}
