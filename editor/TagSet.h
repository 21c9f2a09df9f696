#pragma once

#include <QStringList>

/// A set of tags, in which canonically equivalent spellings are one tag. It has no order of its own
/// and is always listed by character code, which is how it is shown and sent.
class TagSet {
public:
    TagSet() = default;
    explicit TagSet(const QStringList &tags);

    bool contains(const QString &tag) const;
    /// Without the tag when it is in the set, else with it.
    TagSet toggled(const QString &tag) const;
    const QStringList &sorted() const { return m_sorted; }
    bool isEmpty() const { return m_sorted.isEmpty(); }

    friend bool operator==(const TagSet &a, const TagSet &b);

private:
    QStringList m_sorted;
};
