#include "zostyle/ZoStyleFactory.h"

#include "ZoDarkBlueStyle.h"

QStyle* ZoStyleFactory::newStyle(StyleName name, const QString& styleSheetPath)
{
    if (name == DarkBlueStyle)
        return new zostyle::ZoDarkBlueStyle(styleSheetPath);
    // Without a base given, a proxy stands for the platform's own style.
    return new QProxyStyle;
}
