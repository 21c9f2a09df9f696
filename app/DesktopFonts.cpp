#include "app/DesktopFonts.h"

#include <QtGlobal>

#ifdef Q_OS_LINUX
#include <fontconfig/fontconfig.h>
#endif

void readDesktopFonts()
{
#ifdef Q_OS_LINUX
    FcInit();
#endif
}
