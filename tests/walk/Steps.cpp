#include "walk/Steps.h"

#include <array>
#include <numeric>
#include <random>

using namespace Qt::StringLiterals;

namespace {

using Kind = Step::Kind;

struct Chance {
    Kind kind;
    unsigned weight;
    const char *name;
};

constexpr std::array chances = {
    Chance{Kind::Click, 12, "Click"},     Chance{Kind::Press, 22, "Press"},
    Chance{Kind::Key, 34, "Key"},         Chance{Kind::Wheel, 14, "Wheel"},
    Chance{Kind::Resize, 5, "Resize"},    Chance{Kind::Point, 4, "Point"},
    Chance{Kind::Reload, 8, "Reload"},    Chance{Kind::Script, 9, "Script"},
    Chance{Kind::Release, 9, "Release"},  Chance{Kind::Session, 6, "Session"},
    Chance{Kind::Type, 14, "Type"},       Chance{Kind::Scheme, 2, "Scheme"},
    Chance{Kind::Midnight, 2, "Midnight"}};

} // namespace

QList<Step> randomSteps(unsigned seed, int count)
{
    const unsigned all =
        std::accumulate(chances.begin(), chances.end(), 0U,
                        [](unsigned sum, const Chance &chance) { return sum + chance.weight; });
    std::mt19937 random(seed);
    QList<Step> steps;
    for (int i = 0; i < count; ++i) {
        auto left = unsigned(random() % all);
        const auto *chance = chances.begin();
        for (; left >= chance->weight; ++chance)
            left -= chance->weight;
        const auto first = unsigned(random() % 100'000);
        steps.append({chance->kind, first, unsigned(random() % 100'000)});
    }
    return steps;
}

QString textOf(const Step &step)
{
    const auto *chance = chances.begin();
    while (chance->kind != step.kind)
        ++chance;
    return u"{Step::Kind::%1, %2, %3}"_s.arg(QLatin1String(chance->name))
        .arg(step.first)
        .arg(step.second);
}
