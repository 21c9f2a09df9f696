#include "browse/FairShare.h"

#include <algorithm>
#include <numeric>
#include <utility>

QList<int> fairShare(QList<int> wishes, int room)
{
    QList<qsizetype> smallestFirst(wishes.size());
    std::iota(smallestFirst.begin(), smallestFirst.end(), 0);
    std::ranges::sort(smallestFirst, {}, [&](qsizetype i) { return wishes.at(i); });

    auto left = static_cast<int>(wishes.size());
    for (const qsizetype i : std::as_const(smallestFirst)) {
        const int share = std::max(0, room) / left--;
        wishes[i] = std::min(wishes.at(i), share);
        room -= wishes.at(i);
    }
    return wishes;
}
