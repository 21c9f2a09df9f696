#include "sectionlist/SectionListContent.h"

int SectionListContent::rowCount() const
{
    int count = 0;
    for (const auto &section : sections)
        count += section.rowCount;
    return count;
}

QHash<QString, int> foundRows(const SectionListContent &content, const QHash<QString, int> &former)
{
    QHash<QString, int> found;
    const int count = content.rowCount();
    for (auto it = former.begin(); it != former.end(); ++it) {
        if (it.value() < count && content.rowId(it.value()) == it.key())
            found.insert(it.key(), it.value());
    }
    for (int row = 0; row < count && found.size() < former.size(); ++row) {
        const QString id = content.rowId(row);
        if (former.contains(id))
            found.insert(id, row);
    }
    return found;
}
