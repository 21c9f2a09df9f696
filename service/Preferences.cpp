#include "service/Preferences.h"

#include <algorithm>
#include <array>
#include <sstream>
#include <string_view>

namespace {

constexpr std::string_view objectType = "application/vnd.pgrst.object";

std::string withoutSpaces(std::string text)
{
    std::erase_if(text, [](char letter) { return letter == ' ' || letter == '\t'; });
    return text;
}

} // namespace

std::string Preferences::applied() const
{
    std::string text;
    if (showsRows || isMinimal)
        text = showsRows ? "return=representation" : "return=minimal";
    if (count)
        text += (text.empty() ? "" : ", ") + std::string("count=") + *count;
    return text;
}

Preferences preferencesOf(const Call &call)
{
    Preferences preferences;
    bool isReturnKnown = false;
    std::istringstream wishes(withoutSpaces(call.header("prefer")));
    for (std::string wish; std::getline(wishes, wish, ',');) {
        // Of two that contradict each other the first one counts.
        if (wish == "return=representation" || wish == "return=minimal") {
            preferences.showsRows =
                !isReturnKnown ? wish == "return=representation" : preferences.showsRows;
            preferences.isMinimal =
                !isReturnKnown ? wish == "return=minimal" : preferences.isMinimal;
            isReturnKnown = true;
        } else if (wish == "count=exact" || wish == "count=planned" || wish == "count=estimated") {
            preferences.count = preferences.count.value_or(wish.substr(6));
        } else if (wish.starts_with("resolution=")) {
            throw notOffered("adding a row in place of another one (" + wish + ')');
        } else if (wish == "tx=rollback" || wish == "handling=strict" || wish == "missing=default"
                   || wish.starts_with("max-affected=") || wish.starts_with("timezone=")
                   || wish == "return=headers-only") {
            throw notOffered("the preference " + wish);
        }
    }
    return preferences;
}

bool wantsSingleObject(const Call &call)
{
    const std::string accept = call.header("accept");
    if (accept.empty())
        return false;
    constexpr std::array<std::string_view, 5> lists{"*/*", "application/*", "application/json",
                                                    "application/vnd.pgrst.array",
                                                    "application/vnd.pgrst.array+json"};
    std::istringstream types(accept);
    for (std::string entry; std::getline(types, entry, ',');) {
        const std::string type = withoutSpaces(entry.substr(0, entry.find(';')));
        if (type == objectType || type == std::string(objectType) + "+json") {
            if (entry.find("nulls=stripped") != std::string::npos)
                throw notOffered("rows without their nulls");
            return true;
        }
        if (std::find(lists.begin(), lists.end(), type) != lists.end())
            return false;
    }
    throw restError(406, "PGRST107", "None of these media types are available: " + accept);
}

void requireSingle(long count)
{
    if (count != 1) {
        throw restError(406, "PGRST116", "Cannot coerce the result to a single JSON object",
                        "The result contains " + std::to_string(count) + " rows");
    }
}

std::string contentRange(long first, long count, const std::optional<long> &total)
{
    const std::string rows =
        count == 0 ? "*" : std::to_string(first) + '-' + std::to_string(first + count - 1);
    return rows + '/' + (total ? std::to_string(*total) : "*");
}
