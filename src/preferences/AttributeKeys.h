#pragma once

#include <QString>

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
