#include "preferences/AttributeKeys.h"

const QString& AttributeKeys::lineWidth()
{
    static const QString key = QStringLiteral("lineWidth");
    return key;
}

const QString& AttributeKeys::lineColor()
{
    static const QString key = QStringLiteral("lineColor");
    return key;
}

const QString& AttributeKeys::linePenStyle()
{
    static const QString key = QStringLiteral("linePenStyle");
    return key;
}

const QString& AttributeKeys::fillColor()
{
    static const QString key = QStringLiteral("fillColor");
    return key;
}

const QString& AttributeKeys::showEllipse()
{
    static const QString key = QStringLiteral("showEllipse");
    return key;
}

const QString& AttributeKeys::dimensionFont()
{
    static const QString key = QStringLiteral("dimensionFont");
    return key;
}

const QString& AttributeKeys::dimensionTextColor()
{
    static const QString key = QStringLiteral("dimensionTextColor");
    return key;
}

const QString& AttributeKeys::dimensionTextBorderColor()
{
    static const QString key = QStringLiteral("dimensionTextBorderColor");
    return key;
}

const QString& AttributeKeys::dimensionTextBackgroundColor()
{
    static const QString key = QStringLiteral("dimensionTextBackgroundColor");
    return key;
}

const QString& AttributeKeys::angularDimensionRadius()
{
    static const QString key = QStringLiteral("angularDimensionRadius");
    return key;
}

const QString& AttributeKeys::ctrlPointRadius()
{
    static const QString key = QStringLiteral("ctrlPointRadius");
    return key;
}

const QString& AttributeKeys::ctrlPointColor()
{
    static const QString key = QStringLiteral("ctrlPointColor");
    return key;
}

const QString& AttributeKeys::ctrlPointBorderWidth()
{
    static const QString key = QStringLiteral("ctrlPointBorderWidth");
    return key;
}

const QString& AttributeKeys::ctrlPointBorderColor()
{
    static const QString key = QStringLiteral("ctrlPointBorderColor");
    return key;
}

const QString& AttributeKeys::textFont()
{
    static const QString key = QStringLiteral("textFont");
    return key;
}

const QString& AttributeKeys::textColor()
{
    static const QString key = QStringLiteral("textColor");
    return key;
}

const QString& AttributeKeys::borderColor()
{
    static const QString key = QStringLiteral("borderColor");
    return key;
}

const QString& AttributeKeys::borderWidth()
{
    static const QString key = QStringLiteral("borderWidth");
    return key;
}

const QString& AttributeKeys::borderPenStyle()
{
    static const QString key = QStringLiteral("borderPenStyle");
    return key;
}

const QString& AttributeKeys::backgroundColor()
{
    static const QString key = QStringLiteral("backgroundColor");
    return key;
}

const QString& AttributeKeys::margins()
{
    static const QString key = QStringLiteral("margins");
    return key;
}

const QString& AttributeKeys::corner()
{
    static const QString key = QStringLiteral("corner");
    return key;
}
