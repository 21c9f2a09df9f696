#pragma once

#include "backend/Configuration.h"

#include <QByteArray>

/// The text values of this program's information dictionary.
///
/// On macOS that is the bundle's. Elsewhere it is the XML property list that a packager may install
/// as ../share/amorvelle/Info.plist, seen from the folder of the executable. A build folder has no
/// such file, so that a program run from there is configured by its environment alone.
BundleDictionary mainBundleDictionary();

/// The texts at the top level of an XML property list. One that cannot be parsed to its end counts
/// as absent, so that half a configuration is never taken for a whole one.
BundleDictionary readPropertyList(const QByteArray &xml);
