#include "app/BuildInfo.h"

QString BuildInfo::version()
{
    return QStringLiteral("%1.%2.%3.%4")
        .arg(ORVO_VERSION_MAJOR)
        .arg(ORVO_VERSION_MINOR)
        .arg(ORVO_VERSION_PATCH)
        .arg(ORVO_VERSION_TWEAK);
}

QString BuildInfo::time()
{
    return QStringLiteral("%1 %2").arg(QLatin1String(__DATE__), QLatin1String(__TIME__));
}
