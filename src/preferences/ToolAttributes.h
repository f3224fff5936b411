#pragma once

#include <QHash>
#include <QString>
#include <QVariant>

/// The look of a tool: values under the keys of AttributeKeys.
using AttributeHash = QHash<QString, QVariant>;

/// The keys of an attribute hash. Widths and radii are in device pixels.
class AttributeKeys final
{
public:
    AttributeKeys() = delete;

    static const QString& lineWidth();    ///< double; int for the scale bar and after editing
    static const QString& lineColor();    ///< QColor
    static const QString& linePenStyle(); ///< int, a Qt::PenStyle
    static const QString& fillColor();    ///< QColor
    static const QString& showEllipse();  ///< bool, rectangle only

    static const QString& dimensionFont();                ///< QFont of the label
    static const QString& dimensionTextColor();           ///< QColor of the label
    static const QString& dimensionTextBorderColor();     ///< QColor of the label
    static const QString& dimensionTextBackgroundColor(); ///< QColor of the label
    static const QString& angularDimensionRadius();       ///< double

    static const QString& ctrlPointRadius();      ///< double
    static const QString& ctrlPointColor();       ///< QColor
    static const QString& ctrlPointBorderWidth(); ///< double
    static const QString& ctrlPointBorderColor(); ///< QColor

    static const QString& textFont();        ///< QFont
    static const QString& textColor();       ///< QColor
    static const QString& borderColor();     ///< QColor
    static const QString& borderWidth();     ///< int
    static const QString& borderPenStyle();  ///< int, a Qt::PenStyle
    static const QString& backgroundColor(); ///< QColor
    static const QString& margins();         ///< QPoint, scale bar only
    static const QString& corner();          ///< int, a Qt::Corner, scale bar only
};

/// The built-in sets. They need the application object, whose font some of them hold.
namespace DefaultAttributes {

AttributeHash generalTool();
AttributeHash rectange();
AttributeHash calibrationRuler();
AttributeHash arrow();
AttributeHash redArrow();
AttributeHash blueArrow();
AttributeHash greenArrow();
AttributeHash whiteArrow();
AttributeHash textAnnotation();
AttributeHash text();
AttributeHash counter();
AttributeHash scalebar();

} // namespace DefaultAttributes

/// The built-in set of a tool type, empty for a number that is no tool.
AttributeHash defaultAttributes(int type);

/// The user's set of a tool type, or else the built-in one. A stored set counts as a whole: what it
/// lacks is not filled in. The coloured arrows always have their built-in sets.
AttributeHash toolAttributes(int type);

/// Stores the user's set of a tool type. The coloured arrows share the key of the general tools;
/// a number that is no tool stores nothing.
void saveToolAttributes(int type, const AttributeHash& attributes);
