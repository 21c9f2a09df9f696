#include "sectionlist/SectionListOffsets.h"

#include <algorithm>
#include <bit>
#include <utility>

void SectionListOffsets::setSections(const QList<int> &rowCounts, int topPadding, int headingHeight)
{
    m_topPadding = topPadding;
    m_firstRows.clear();
    int rows = 0;
    for (const int count : rowCounts) {
        m_firstRows.push_back(rows);
        rows += count;
    }
    m_heights.resize(size_t(rows));
    forgetHeights(headingHeight);
}

void SectionListOffsets::forgetHeights(int headingHeight)
{
    m_headingHeight = headingHeight;
    std::ranges::fill(m_heights, -1);
    m_measured = 0;
    m_measuredPixels = 0;
    m_nextRefinement = 1;
    rebuild();
}

int SectionListOffsets::sectionOf(int row) const
{
    const auto after = std::ranges::upper_bound(m_firstRows, row);
    return int(after - m_firstRows.begin()) - 1;
}

int SectionListOffsets::height(int row) const
{
    return isMeasured(row) ? m_heights[size_t(row)] : m_estimate;
}

void SectionListOffsets::setHeight(int row, int height)
{
    const bool wasMeasured = isMeasured(row);
    const int growth = wasMeasured ? height - m_heights[size_t(row)] : height;
    if (wasMeasured && growth == 0)
        return;
    m_heights[size_t(row)] = height;
    m_measured += wasMeasured ? 0 : 1;
    m_measuredPixels += growth;
    for (size_t i = size_t(row) + 1; i < m_tree.size(); i += i & (~i + 1)) {
        m_tree[i].pixels += growth;
        m_tree[i].unmeasured -= wasMeasured ? 0 : 1;
    }
}

bool SectionListOffsets::refineEstimate()
{
    if (m_measured < m_nextRefinement)
        return false;
    m_nextRefinement = 2 * m_measured;
    const int mean = (m_measuredPixels + m_measured / 2) / m_measured;
    return std::exchange(m_estimate, mean) != mean && m_measured < rowCount();
}

int SectionListOffsets::top(int row) const
{
    Node sum;
    for (auto i = size_t(row); i > 0; i &= i - 1) {
        sum.pixels += m_tree[i].pixels;
        sum.unmeasured += m_tree[i].unmeasured;
    }
    return m_topPadding + extent(sum) + (isFirst(row) ? m_headingHeight : 0);
}

int SectionListOffsets::total() const
{
    return rowCount() == 0 ? 0 : bottom(rowCount() - 1);
}

int SectionListOffsets::rowAt(int y) const
{
    size_t row = 0;
    int left = y - m_topPadding;
    for (size_t step = std::bit_floor(m_heights.size()); step > 0; step /= 2) {
        const size_t next = row + step;
        if (next >= m_tree.size() || extent(m_tree[next]) > left)
            continue;
        row = next;
        left -= extent(m_tree[next]);
    }
    return std::min(int(row), rowCount() - 1);
}

bool SectionListOffsets::isFirst(int row) const
{
    return std::ranges::binary_search(m_firstRows, row);
}

void SectionListOffsets::rebuild()
{
    m_tree.assign(m_heights.size() + 1, Node{0, 1});
    m_tree[0] = {};
    for (const int row : m_firstRows)
        m_tree[size_t(row) + 1].pixels = m_headingHeight;
    for (size_t i = 1; i < m_tree.size(); ++i) {
        const size_t parent = i + (i & (~i + 1));
        if (parent >= m_tree.size())
            continue;
        m_tree[parent].pixels += m_tree[i].pixels;
        m_tree[parent].unmeasured += m_tree[i].unmeasured;
    }
}
