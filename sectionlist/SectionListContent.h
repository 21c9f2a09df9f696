#pragma once

#include <QHash>
#include <QList>
#include <QString>

#include <functional>

class SectionListRow;

/// What a SectionList shows: sections of rows, numbered through all sections from 0.
struct SectionListContent {
    struct Section {
        QString title;
        int rowCount = 0; ///< a section without rows is not shown
    };

    QList<Section> sections;
    /// The row's identity, unique in the list: by it the place, the focus and the selection are
    /// kept over a change of content. Called for few rows, and for all when the content changes and
    /// a row to be kept is not where it was. Not called once other content is set.
    std::function<QString(int row)> rowId;
    /// Shows row `row` in a widget that may have shown another one.
    std::function<void(SectionListRow &widget, int row)> fill;

    int rowCount() const;
};

/// Where the rows with these identities, formerly at these numbers, are in the content; those that
/// are gone are not in the answer.
QHash<QString, int> foundRows(const SectionListContent &content, const QHash<QString, int> &former);
