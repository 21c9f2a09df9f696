#include "editor/TagSet.h"

#include "platform/Text.h"

#include <algorithm>
#include <iterator>

TagSet::TagSet(const QStringList &tags)
    : m_sorted(tags)
{
    std::stable_sort(m_sorted.begin(), m_sorted.end(), beforeByCharacter);
    const auto end = std::unique(m_sorted.begin(), m_sorted.end(), sameText);
    m_sorted.resize(std::distance(m_sorted.begin(), end));
}

bool TagSet::contains(const QString &tag) const
{
    return std::binary_search(m_sorted.begin(), m_sorted.end(), tag, beforeByCharacter);
}

TagSet TagSet::toggled(const QString &tag) const
{
    TagSet result = *this;
    const auto [first, last] =
        std::equal_range(result.m_sorted.cbegin(), result.m_sorted.cend(), tag, beforeByCharacter);
    if (first == last)
        result.m_sorted.insert(first, tag);
    else
        result.m_sorted.erase(first, last);
    return result;
}

bool operator==(const TagSet &a, const TagSet &b)
{
    return std::equal(a.m_sorted.begin(), a.m_sorted.end(), b.m_sorted.begin(), b.m_sorted.end(),
                      sameText);
}
