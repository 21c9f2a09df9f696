#include "sectionlist/SectionListBody.h"

#include "sectionlist/SectionListHeading.h"
#include "sectionlist/SectionListMetrics.h"

#include <QScopedValueRollback>

#include <algorithm>
#include <functional>
#include <optional>
#include <utility>

namespace Metrics = SectionListMetrics;

SectionListBody::SectionListBody(std::function<SectionListRow *()> makeRow, QWidget *parent)
    : QWidget(parent)
    , m_rows([this, make = std::move(makeRow)] { return this->makeRow(make); })
{
    setAttribute(Qt::WA_OpaquePaintEvent); // without it, scrolling repaints everything
    setAttribute(Qt::WA_Hover);
}

void SectionListBody::setContent(SectionListContent content, const QHash<QString, int> &found,
                                 std::optional<int> pinned)
{
    const bool atTop = m_flow.top() == 0;
    const auto kept = atTop ? std::nullopt : keptPlace(found);
    m_rows.releaseAll();
    m_content = std::move(content);
    m_content.sections.removeIf([](const auto &section) { return section.rowCount <= 0; });
    QList<int> counts;
    for (const auto &section : std::as_const(m_content.sections))
        counts.append(section.rowCount);
    m_flow.offsets.setSections(counts, Metrics::topPadding, SectionListHeading::height());
    m_pinned = pinned;
    layOut(Repaint::Everything, kept);
}

void SectionListBody::refresh()
{
    const auto kept = m_flow.place();
    m_rows.releaseAll();
    m_flow.offsets.forgetHeights(SectionListHeading::height());
    layOut(Repaint::Everything, kept);
}

void SectionListBody::scrollBy(int pixels)
{
    paintWhatWaits();
    {
        const QScopedValueRollback filling(m_filling, true);
        m_flow.moveBy(pixels, measure());
    }
    layOut();
}

void SectionListBody::scrollTo(int top)
{
    m_flow.moveTo(top);
    layOut();
}

void SectionListBody::scrollToEnd()
{
    m_flow.moveToEnd();
    layOut();
}

void SectionListBody::showRow(int row)
{
    // A far row is approached over estimates, which laying out corrects: a few rounds.
    constexpr int mostRounds = 8;
    for (int round = 0; round < mostRounds; ++round) {
        {
            const QScopedValueRollback filling(m_filling, true);
            if (!m_flow.reveal(row, measure()))
                break;
        }
        layOut();
    }
}

void SectionListBody::pin(std::optional<int> row)
{
    const auto former = std::exchange(m_pinned, row);
    // What was kept out of view for the focus alone stands in no row's place.
    const bool lets = former && former != row && m_rows.find(*former) && !isNear(*former);
    if (lets || (row && !m_rows.find(*row)))
        layOut();
}

std::optional<int> SectionListBody::rowAt(QPoint point) const
{
    if (rowCount() == 0 || !rect().contains(point))
        return {};
    const int row = m_flow.offsets.rowAt(m_flow.top() + point.y());
    return rectOf(row).contains(point) ? std::optional(row) : std::nullopt;
}

SectionListRow *SectionListBody::makeRow(const std::function<SectionListRow *()> &make)
{
    auto *row = make();
    row->setParent(this);
    Q_EMIT rowMade(row);
    return row;
}

SectionListFlow::Measure SectionListBody::measure()
{
    const int content = std::max(0, width() - Metrics::textLeft - Metrics::textRight);
    return [this, content](int row) {
        return bind(row).widget->heightFor(content) + 2 * Metrics::rowPadding;
    };
}

SectionListRows::Bound &SectionListBody::bind(int row)
{
    const bool wasBound = m_rows.find(row);
    auto &bound = m_rows.bind(row, m_content);
    if (!wasBound && !bound.same)
        bound.widget->forgetPress();
    return bound;
}

/// Where the row that the eye reads is in new content; if it is gone, the nearest one with a widget
/// that is left, downwards, then upwards.
std::optional<SectionListFlow::Place>
SectionListBody::keptPlace(const QHash<QString, int> &found) const
{
    const auto placeOf = [&](const auto &entry) -> std::optional<Place> {
        const auto it = found.constFind(entry.second.id);
        if (it == found.constEnd())
            return {};
        const auto &offsets = m_flow.offsets;
        return Place{*it, offsets.top(entry.first) - m_flow.top(), offsets.height(entry.first)};
    };
    const auto &bound = m_rows.bound();
    const auto eye = bound.lower_bound(m_flow.place().row);
    for (auto it = eye; it != bound.end(); ++it) {
        if (const auto place = placeOf(*it))
            return place;
    }
    for (auto it = eye; it != bound.begin();) {
        if (const auto place = placeOf(*--it))
            return place;
    }
    return {};
}
