#pragma once

#include <QList>

#include <vector>

/// Where the rows of a list of sections stand: heights of rows that were measured, an estimate for
/// all others, and a heading above the first row of each section. From row to place and back in
/// O(log n); a new list of rows, or new heights for all, in O(n). Pixels; a plain value.
///
/// The sums are a binary indexed tree (P. Fenwick, "A New Data Structure for Cumulative Frequency
/// Tables", 1994) that holds the measured pixels and the number of rows not measured, so that a
/// better estimate moves all unmeasured rows at no cost.
class SectionListOffsets {
public:
    /// Sections with these numbers of rows, each at least 1; no row is measured.
    void setSections(const QList<int> &rowCounts, int topPadding, int headingHeight);
    /// Another heading height, and no row is measured; the estimate stays.
    void forgetHeights(int headingHeight);

    int rowCount() const { return int(m_heights.size()); }
    int sectionCount() const { return int(m_firstRows.size()); }
    int sectionOf(int row) const;
    int firstRow(int section) const { return m_firstRows[size_t(section)]; }
    int headingHeight() const { return m_headingHeight; }

    bool isMeasured(int row) const { return m_heights[size_t(row)] >= 0; }
    int height(int row) const;
    void setHeight(int row, int height);

    int estimate() const { return m_estimate; }
    /// Takes the mean of the measured rows as the estimate, whenever their number has doubled.
    /// True when places have changed.
    bool refineEstimate();

    int top(int row) const; ///< of the row itself, below a heading above it
    int bottom(int row) const { return top(row) + height(row); }
    int headingTop(int section) const { return top(firstRow(section)) - m_headingHeight; }
    int total() const;
    /// The row that, with the heading above it, covers `y`; the first or last one beyond the ends.
    int rowAt(int y) const;

private:
    struct Node {
        int pixels = 0; ///< headings and measured rows
        int unmeasured = 0;
    };

    bool isFirst(int row) const;
    void rebuild();
    int extent(const Node &node) const { return node.pixels + node.unmeasured * m_estimate; }

    std::vector<int> m_heights; ///< -1: not measured
    std::vector<int> m_firstRows;
    std::vector<Node> m_tree; ///< from 1
    int m_topPadding = 0;
    int m_headingHeight = 0;
    int m_estimate = 100;
    int m_measured = 0;
    int m_measuredPixels = 0;
    int m_nextRefinement = 1;
};
