#pragma once

#include "sectionlist/SectionListContent.h"
#include "sectionlist/SectionListFlow.h"

#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <vector>

class QObject;

/// The widgets of a SectionList's rows: those bound to a row, and spare ones. They belong to their
/// parent widget.
class SectionListRows {
public:
    struct Bound {
        SectionListRow *widget = nullptr;
        QString id;
        bool placed = false; ///< it stood in the list before, and stands there still
        bool same = false; ///< it showed this very row when it was bound
    };

    explicit SectionListRows(std::function<SectionListRow *()> make);

    /// The rows that have a widget, in their order.
    const std::map<int, Bound> &bound() const { return m_bound; }
    std::map<int, Bound> &bound() { return m_bound; }
    SectionListRow *find(int row) const;
    /// The row in whose widget `object` is, or which it is.
    std::optional<int> rowOf(const QObject *object) const;

    /// The row's widget. A spare one that showed the same row is preferred; a spare one with the
    /// keyboard focus is only taken for the row that it showed.
    Bound &bind(int row, const SectionListContent &content);
    /// A widget filled with the row: its own, or one kept aside for this.
    SectionListRow *read(int row, const SectionListContent &content);
    /// Makes spare what is not in the range, save one row.
    void releaseOutside(const SectionListFlow::Range &range, std::optional<int> pinned);
    void releaseAll();
    /// Hides what is spare, whatever it was, and frees what is more than a few. None of it may have
    /// the keyboard focus, which hiding would send anywhere.
    void hideSpare();

private:
    struct Spare {
        SectionListRow *widget = nullptr;
        QString id;
    };

    Spare take(const QString &id);

    std::function<SectionListRow *()> m_make;
    std::map<int, Bound> m_bound;
    std::vector<Spare> m_spare;
    SectionListRow *m_read = nullptr;
};
