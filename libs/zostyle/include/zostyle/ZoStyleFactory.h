#pragma once

#include <QString>

class QStyle;

/// Makes the application styles of this library.
class ZoStyleFactory
{
public:
    enum StyleName {
        SystemStyle = 0, ///< The platform's own style, unchanged.
        DarkBlueStyle = 1,
    };

    /// A new style, owned by the caller (QApplication::setStyle takes it over). The style brings
    /// its palette and the style sheet at `styleSheetPath` to the application when it is polished
    /// in, and takes both back when it is unpolished. A missing style sheet leaves the palette.
    static QStyle* newStyle(StyleName name, const QString& styleSheetPath);
};
