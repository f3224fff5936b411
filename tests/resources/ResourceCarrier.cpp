#include "ResourceCarrier.h"

QString iconThemeFolder()
{
    return QStringLiteral(":/icons/light-blue");
}
