#pragma once

#include "service/Reply.h"

#include <optional>
#include <string>

/// What a client asks for in the header "Prefer".
struct Preferences {
    bool showsRows = false; ///< return=representation
    bool isMinimal = false; ///< return=minimal
    std::optional<std::string> count; ///< "exact", "planned" or "estimated": all count exactly here

    /// The value of the header "Preference-Applied", empty when nothing was asked for.
    std::string applied() const;
};

/// Throws the Reply for a preference that would change what is written and is not offered.
Preferences preferencesOf(const Call &call);

/// Whether the client wants the one row as an object ("application/vnd.pgrst.object+json") instead
/// of a list. Throws the Reply when it accepts no JSON at all.
bool wantsSingleObject(const Call &call);

/// Throws the Reply that refuses to show `count` rows as one object, unless it is one.
void requireSingle(long count);

/// "0-9/20", "*/20", "0-9/*": rows from `first` on, of which there are `count`, of `total`.
std::string contentRange(long first, long count, const std::optional<long> &total);
