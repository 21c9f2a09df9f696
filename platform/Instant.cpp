#include "platform/Instant.h"

#include <QDateTime>

Instant Instant::now()
{
    return {QDateTime::currentMSecsSinceEpoch()};
}
