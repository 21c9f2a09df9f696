#pragma once

#include "sectionlist/SectionListOffsets.h"

#include <algorithm>
#include <functional>

/// What of a list of sections is in view. Rows are measured when they come into view or near it;
/// a correction above the view's top never moves what is in view. Pixels; knows no widget.
class SectionListFlow {
public:
    /// The exact height of a row, its share of the list's own paddings included.
    using Measure = std::function<int(int row)>;

    struct Range {
        int first = 0;
        int last = -1; ///< included; before `first` when there is none
    };

    /// A row and how far its top lies below the top of the view; less than 0: above it.
    struct Place {
        int row = 0;
        int below = 0;
        int height = 0;
    };

    SectionListOffsets offsets;

    int top() const { return m_top; } ///< what of the list is at the view's top
    int viewHeight() const { return m_viewHeight; }
    void setViewHeight(int height) { m_viewHeight = height; }
    int maximum() const { return std::max(0, offsets.total() - m_viewHeight); }

    void moveTo(int top);
    void moveToEnd();
    /// Moves by exactly so much of what is seen: rows on the way are measured first. A way of more
    /// than a few views is taken by estimate.
    void moveBy(int pixels, const Measure &measure);

    /// The row that the eye reads: the first one that is not wholly above the view or under the
    /// heading stuck to its top.
    Place place() const;
    /// Brings the row back where it was; of a row that begins above the view and has another height
    /// now, the same part is hidden.
    void restore(const Place &place, const Measure &measure);

    /// Moves by as little as it takes to have the whole row in view, below the heading stuck to the
    /// top; of a row too high for that, the beginning. False when it was so already. Rows measured
    /// while settling may undo it: settle and ask again.
    bool reveal(int row, const Measure &measure);

    /// Rows in view, by what is known so far, and those within the margin around it.
    Range range(int margin) const;
    /// Measures what is in view or within the margin and keeps the view within the list.
    Range settle(int margin, const Measure &measure);

private:
    void measureRow(int row, const Measure &measure);

    int m_top = 0;
    int m_viewHeight = 0;
    bool m_toEnd = false; ///< the next settling ends at the end, wherever that turns out to be
};
