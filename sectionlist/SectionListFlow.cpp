#include "sectionlist/SectionListFlow.h"

namespace {
constexpr int viewsMeasuredOnTheWay = 3;
}

void SectionListFlow::moveTo(int top)
{
    m_top = top;
    m_toEnd = false;
}

void SectionListFlow::moveToEnd()
{
    m_top = maximum();
    m_toEnd = true;
}

void SectionListFlow::moveBy(int pixels, const Measure &measure)
{
    if (offsets.rowCount() == 0)
        return;
    const bool far = std::abs(pixels) > viewsMeasuredOnTheWay * std::max(m_viewHeight, 1);
    if (far) {
        m_top += pixels;
        return;
    }
    // Downwards the rows on the way stand below the top: settle() measures them from the top on.
    for (int row = offsets.rowAt(m_top); pixels < 0 && row >= 0; --row) {
        measureRow(row, measure);
        if (offsets.top(row) <= m_top + pixels)
            break;
    }
    for (int row = offsets.rowAt(m_top); pixels > 0 && row < offsets.rowCount(); ++row) {
        measureRow(row, measure);
        if (offsets.bottom(row) >= m_top + pixels)
            break;
    }
    m_top += pixels;
}

SectionListFlow::Place SectionListFlow::place() const
{
    if (offsets.rowCount() == 0)
        return {};
    const int row = offsets.rowAt(m_top > 0 ? m_top + offsets.headingHeight() : 0);
    return {row, offsets.top(row) - m_top, offsets.height(row)};
}

void SectionListFlow::restore(const Place &place, const Measure &measure)
{
    if (offsets.rowCount() == 0)
        return;
    measureRow(place.row, measure);
    int below = place.below;
    if (below < 0 && place.height > 0)
        below = int(qint64(below) * offsets.height(place.row) / place.height);
    // What shows above the row must have its height before the row can have its place.
    for (int row = place.row - 1; row >= 0 && offsets.top(place.row) - offsets.top(row + 1) < below;
         --row)
        measureRow(row, measure);
    m_top = offsets.top(place.row) - below;
}

bool SectionListFlow::reveal(int row, const Measure &measure)
{
    measureRow(row, measure);
    const int latest = row == 0 ? 0 : offsets.top(row) - offsets.headingHeight();
    const int earliest = std::min(offsets.bottom(row) - m_viewHeight, latest);
    const int wanted = std::clamp(m_top, std::max(earliest, 0), std::max(latest, 0));
    if (wanted == m_top)
        return false;
    moveBy(wanted - m_top, measure);
    return true;
}

SectionListFlow::Range SectionListFlow::range(int margin) const
{
    if (offsets.rowCount() == 0)
        return {};
    return {offsets.rowAt(m_top - margin), offsets.rowAt(m_top + m_viewHeight + margin)};
}

SectionListFlow::Range SectionListFlow::settle(int margin, const Measure &measure)
{
    if (offsets.rowCount() == 0) {
        m_top = 0;
        return {};
    }
    // A round ends by moving the view only when the rows just measured showed that it stood beyond
    // an end of the list. To judge that before measuring would be to trust the estimates.
    for (bool settled = false; !settled;) {
        for (int row = offsets.rowAt(m_top); row < offsets.rowCount(); ++row) {
            measureRow(row, measure);
            if (offsets.bottom(row) > m_top + m_viewHeight + margin)
                break;
        }
        for (int row = offsets.rowAt(m_top); row >= 0; --row) {
            measureRow(row, measure);
            if (offsets.top(row) < m_top - margin)
                break;
        }
        const Place seen = place();
        if (offsets.refineEstimate())
            m_top = offsets.top(seen.row) - seen.below;
        const int within = m_toEnd ? maximum() : std::clamp(m_top, 0, maximum());
        settled = within == m_top;
        m_top = within;
    }
    m_toEnd = false;
    return range(margin);
}

void SectionListFlow::measureRow(int row, const Measure &measure)
{
    if (offsets.isMeasured(row))
        return;
    const int before = offsets.bottom(row);
    offsets.setHeight(row, measure(row));
    if (before <= m_top)
        m_top += offsets.bottom(row) - before;
}
