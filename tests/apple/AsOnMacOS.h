#pragma once

// Included before everything else: from here on the toolkit's headers declare what they declare on
// macOS, and our files take their Apple-only branches. The toolkit's own look at the host comes
// first, since it would ask for Apple's headers.
#include <QtCore/qsystemdetection.h>

// The tags that tell which toolkit a file was built with would go to a section that only macOS has.
#define QT_NO_VERSION_TAGGING
#define Q_OS_DARWIN
#define Q_OS_MACOS
