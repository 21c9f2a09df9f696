#pragma once

// Included before everything else: from here on the toolkit's headers declare what they declare on
// macOS, and our files take their Apple-only branches. The toolkit's own look at the host comes
// first, since it would ask for Apple's headers.
#include <QtCore/qsystemdetection.h>

#define Q_OS_DARWIN
#define Q_OS_MACOS
