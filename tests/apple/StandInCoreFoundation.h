#pragma once

#include <QByteArray>
#include <QHash>
#include <QString>

#include <optional>
#include <variant>

/// What stands behind the functions that CoreFoundation/CoreFoundation.h declares: a bundle and
/// preferences in memory, and a count of what was made and not given back.
namespace StandInCoreFoundation {

/// A text or something else.
using Value = std::variant<QString, QByteArray>;

/// The main bundle's dictionary; none: the program has no bundle.
std::optional<QHash<QString, Value>> &bundle();

/// The preferences of the running application as they are.
QHash<QString, Value> &preferences();
/// The preferences as they were when they were last written out.
const QHash<QString, Value> &writtenPreferences();

/// How many objects are held by somebody who does not own them by a container.
int held();

} // namespace StandInCoreFoundation
