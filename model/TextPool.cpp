#include "model/TextPool.h"

#include "platform/WholeJson.h"

#include <cstddef>
#include <cstring>
#include <utility>

namespace {

// Takes two words into a hash. Multiplying carries every bit upwards, the shift brings the high
// ones down again, where the tables look. The tables are short-lived: nobody can aim at them.
std::uint64_t mixed(std::uint64_t hash, std::uint64_t low, std::uint64_t high)
{
    constexpr std::uint64_t first = 0x9E37'79B9'7F4A'7C15; // odd, its bits without a pattern
    constexpr std::uint64_t second = 0xC2B2'AE3D'27D4'EB4F;
    const std::uint64_t product = (hash ^ low) * first ^ high * second;
    return (product ^ product >> 32) * first;
}

template <typename Word = std::uint64_t>
std::uint64_t wordAt(const char *at)
{
    Word word = 0;
    std::memcpy(&word, at, sizeof(word));
    return word;
}

std::uint64_t hashOf(std::string_view bytes)
{
    constexpr size_t step = 2 * sizeof(std::uint64_t);
    const char *at = bytes.data();
    size_t size = bytes.size();
    std::uint64_t hash = size;
    for (; size > step; at += step, size -= step)
        hash = mixed(hash, wordAt(at), wordAt(at + step / 2));
    // The last words may overlap those before.
    std::uint64_t low = 0;
    std::uint64_t high = 0;
    if (bytes.size() >= step) {
        low = wordAt(at + size - step);
        high = wordAt(at + size - step / 2);
    } else if (size >= step / 2) {
        low = wordAt(at);
        high = wordAt(at + size - step / 2);
    } else if (size >= step / 4) {
        low = wordAt<std::uint32_t>(at);
        high = wordAt<std::uint32_t>(at + size - step / 4);
    } else {
        for (; size > 0; ++at, --size)
            low = low << 8 | static_cast<unsigned char>(*at);
    }
    hash = mixed(hash, low, high);
    return hash ^ hash >> 32;
}

} // namespace

void HashIndex::grow()
{
    const std::vector<Slot> old =
        std::exchange(m_slots, std::vector<Slot>(m_slots.empty() ? 64 : m_slots.size() * 2));
    for (const Slot &slot : old) {
        if (slot.number == none)
            continue;
        size_t at = slot.hash & (m_slots.size() - 1);
        while (m_slots[at].number != none)
            at = (at + 1) & (m_slots.size() - 1);
        m_slots[at] = slot;
    }
}

std::uint32_t TextPool::number(std::string_view utf8)
{
    const auto next = static_cast<std::uint32_t>(m_entries.size());
    const std::uint32_t number = m_index.findOrAdd(hashOf(utf8), next, [&](std::uint32_t known) {
        return sameBytes(m_entries[known].utf8, utf8);
    });
    if (number == next)
        m_entries.push_back({utf8, textOf(utf8)});
    return number;
}

QString TextPool::take(std::string_view utf8)
{
    // A look costs about half of making a text.
    constexpr std::uint32_t trial = 512;
    if (!m_isWorthLooking)
        return textOf(utf8);
    if (++m_asked % trial == 0)
        m_isWorthLooking = m_entries.size() < std::size_t{m_asked} / 4 * 3;
    return m_entries[number(utf8)].text;
}

QStringList TextListPool::take()
{
    const auto next = static_cast<std::uint32_t>(m_lists.size());
    const std::uint64_t hash = hashOf({reinterpret_cast<const char *>(m_current.data()),
                                       m_current.size() * sizeof(m_current[0])});
    const std::uint32_t number = m_index.findOrAdd(
        hash, next, [&](std::uint32_t known) { return m_numbers[known] == m_current; });
    if (number == next) {
        QStringList list;
        list.reserve(static_cast<qsizetype>(m_current.size()));
        for (const std::uint32_t text : m_current)
            list.append(m_texts.text(text));
        m_lists.push_back(std::move(list));
        m_numbers.push_back(m_current);
    }
    m_current.clear();
    return m_lists[number];
}
