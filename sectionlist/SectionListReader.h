#pragma once

#include <QAccessible>
#include <QRect>

#include <optional>

class SectionList;
class SectionListRow;

/// A SectionList as a screen reader walks it: items numbered in the order of reading, each heading
/// before the rows of its section. Cheap to make, kept by nobody.
class SectionListReader {
public:
    explicit SectionListReader(SectionList &list)
        : m_list(list)
    {
    }

    static SectionList *listOf(const SectionListRow *row);

    int contentNumber() const; ///< another one for other content
    int itemCount() const;
    std::optional<int> rowOfItem(int item) const; ///< none: a heading
    int itemOfRow(int row) const;
    std::optional<int> rowOfWidget(const QObject *widget) const;
    QRect rectOfItem(int item) const; ///< on the screen, or where it would be
    QString textOfItem(int item, QAccessible::Text kind) const;
    void giveFocus(int row) const; ///< scrolls to it

private:
    int sectionOfItem(int item) const;

    SectionList &m_list;
};
