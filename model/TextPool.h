#pragma once

#include <QString>
#include <QStringList>

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <string_view>
#include <vector>

/// Whether two texts are the same byte by byte: quicker than memcmp for the few bytes of most.
inline bool sameBytes(std::string_view a, std::string_view b)
{
    const size_t size = a.size();
    if (size != b.size())
        return false;
    // The last word may overlap the one before.
    const auto sameWords = [&](auto word) {
        auto other = word;
        for (size_t at = 0;; at = std::min(at + sizeof(word), size - sizeof(word))) {
            std::memcpy(&word, a.data() + at, sizeof(word));
            std::memcpy(&other, b.data() + at, sizeof(word));
            if (word != other)
                return false;
            if (at + sizeof(word) == size)
                return true;
        }
    };
    if (size >= sizeof(std::uint64_t))
        return sameWords(std::uint64_t{});
    if (size >= sizeof(std::uint32_t))
        return sameWords(std::uint32_t{});
    for (size_t at = 0; at < size; ++at) {
        if (a[at] != b[at])
            return false;
    }
    return true;
}

/// Finds what was put in before by a hash that the caller makes: a table of numbers, open
/// addressing.
class HashIndex {
public:
    static constexpr std::uint32_t none = 0xFFFF'FFFF;

    /// The number put in under `hash` for which `isSame` holds, or `next` after putting it in.
    template <typename IsSame>
    std::uint32_t findOrAdd(std::uint64_t hash, std::uint32_t next, IsSame isSame)
    {
        if (m_count * 2 >= m_slots.size())
            grow();
        for (size_t at = hash & (m_slots.size() - 1);; at = (at + 1) & (m_slots.size() - 1)) {
            Slot &slot = m_slots[at];
            if (slot.number == none) {
                slot = {hash, next};
                ++m_count;
                return next;
            }
            if (slot.hash == hash && isSame(slot.number))
                return slot.number;
        }
    }

private:
    struct Slot {
        std::uint64_t hash = 0;
        std::uint32_t number = none;
    };

    void grow();

    std::vector<Slot> m_slots;
    size_t m_count = 0;
};

/// Texts of which equal ones share storage, by their UTF-8. The bytes must outlive the pool.
///
/// A pool in which hardly any text comes back stops looking: every further text is made anew.
class TextPool {
public:
    QString take(std::string_view utf8);

    /// The number of `utf8` among the pool's texts, from 0 in order of their first coming.
    std::uint32_t number(std::string_view utf8);
    const QString &text(std::uint32_t number) const { return m_entries[number].text; }

private:
    struct Entry {
        std::string_view utf8;
        QString text;
    };

    HashIndex m_index;
    std::vector<Entry> m_entries;
    std::uint32_t m_asked = 0;
    bool m_isWorthLooking = true;
};

/// Lists of texts: equal texts and equal lists share storage.
class TextListPool {
public:
    /// Adds a text to the list being made.
    void add(std::string_view utf8) { m_current.push_back(m_texts.number(utf8)); }
    /// The list made of what was added since the last call.
    QStringList take();

private:
    TextPool m_texts;
    HashIndex m_index;
    std::vector<std::uint32_t> m_current;
    std::vector<std::vector<std::uint32_t>> m_numbers;
    std::vector<QStringList> m_lists;
};
