#include "preferences/DefaultAttributes.h"

#include "measure/ToolTypes.h"
#include "preferences/AttributeKeys.h"

#include <QColor>
#include <QFont>
#include <QPoint>

namespace {

void addLine(AttributeHash& attributes, double width, const QColor& color)
{
    attributes.insert(AttributeKeys::lineWidth(), width);
    attributes.insert(AttributeKeys::lineColor(), color);
    attributes.insert(AttributeKeys::linePenStyle(), int(Qt::SolidLine));
}

void addDimension(AttributeHash& attributes, const QColor& text, const QColor& border,
                  const QColor& background)
{
    attributes.insert(AttributeKeys::dimensionFont(), QFont());
    attributes.insert(AttributeKeys::dimensionTextColor(), text);
    attributes.insert(AttributeKeys::dimensionTextBorderColor(), border);
    attributes.insert(AttributeKeys::dimensionTextBackgroundColor(), background);
}

void addControlPoints(AttributeHash& attributes)
{
    attributes.insert(AttributeKeys::ctrlPointRadius(), 5.0);
    attributes.insert(AttributeKeys::ctrlPointColor(), QColor(Qt::white));
    attributes.insert(AttributeKeys::ctrlPointBorderWidth(), 2.0);
    attributes.insert(AttributeKeys::ctrlPointBorderColor(), QColor(Qt::gray));
}

void addText(AttributeHash& attributes, const QFont& font)
{
    attributes.insert(AttributeKeys::textFont(), font);
    attributes.insert(AttributeKeys::textColor(), QColor(Qt::white));
}

void addBox(AttributeHash& attributes, const QColor& border, const QColor& background)
{
    attributes.insert(AttributeKeys::borderColor(), border);
    attributes.insert(AttributeKeys::borderWidth(), 1);
    attributes.insert(AttributeKeys::borderPenStyle(), int(Qt::SolidLine));
    attributes.insert(AttributeKeys::backgroundColor(), background);
}

AttributeHash arrowWith(const QColor& line, const QColor& fill)
{
    AttributeHash attributes;
    addLine(attributes, 2.0, line);
    attributes.insert(AttributeKeys::fillColor(), fill);
    addControlPoints(attributes);
    return attributes;
}

QFont annotationFont()
{
    return QFont(QStringLiteral("Arial"), 12);
}

} // namespace

AttributeHash DefaultAttributes::generalTool()
{
    AttributeHash attributes;
    addLine(attributes, 1.0, QColor(0, 150, 211, 255));
    attributes.insert(AttributeKeys::fillColor(), QColor(Qt::transparent));
    addDimension(attributes, Qt::white, QColor(120, 120, 120, 200), QColor(0, 150, 211, 200));
    attributes.insert(AttributeKeys::angularDimensionRadius(), 15.0);
    addControlPoints(attributes);
    return attributes;
}

AttributeHash DefaultAttributes::rectange()
{
    AttributeHash attributes = generalTool();
    attributes.insert(AttributeKeys::showEllipse(), false);
    return attributes;
}

AttributeHash DefaultAttributes::calibrationRuler()
{
    AttributeHash attributes;
    addLine(attributes, 1.0, Qt::red);
    addDimension(attributes, Qt::red, Qt::darkRed, Qt::white);
    addControlPoints(attributes);
    return attributes;
}

AttributeHash DefaultAttributes::arrow()
{
    return arrowWith(QColor(67, 114, 157, 255), QColor(91, 155, 213, 255));
}

AttributeHash DefaultAttributes::redArrow()
{
    return arrowWith(QColor(234, 112, 112, 255), QColor(253, 196, 182, 255));
}

AttributeHash DefaultAttributes::blueArrow()
{
    return arrowWith(QColor(0, 0, 161, 255), QColor(31, 110, 212, 255));
}

AttributeHash DefaultAttributes::greenArrow()
{
    return arrowWith(QColor(65, 146, 75, 255), QColor(135, 226, 147, 255));
}

AttributeHash DefaultAttributes::whiteArrow()
{
    return arrowWith(QColor(162, 169, 175, 255), QColor(235, 237, 236, 255));
}

AttributeHash DefaultAttributes::textAnnotation()
{
    AttributeHash attributes;
    addLine(attributes, 1.0, QColor(67, 114, 157, 255));
    attributes.insert(AttributeKeys::fillColor(), QColor(91, 155, 213, 128));
    addControlPoints(attributes);
    addText(attributes, annotationFont());
    return attributes;
}

AttributeHash DefaultAttributes::text()
{
    AttributeHash attributes;
    addText(attributes, annotationFont());
    addBox(attributes, QColor(120, 120, 120, 200), QColor(0, 150, 211, 200));
    return attributes;
}

AttributeHash DefaultAttributes::counter()
{
    AttributeHash attributes;
    addText(attributes, QFont());
    addBox(attributes, Qt::darkRed, Qt::red);
    return attributes;
}

AttributeHash DefaultAttributes::scalebar()
{
    AttributeHash attributes;
    addText(attributes, annotationFont());
    addBox(attributes, Qt::transparent, Qt::transparent);
    attributes.insert(AttributeKeys::lineWidth(), 4);
    attributes.insert(AttributeKeys::margins(), QPoint(5, 5));
    attributes.insert(AttributeKeys::corner(), int(Qt::BottomLeftCorner));
    return attributes;
}

AttributeHash defaultAttributes(int type)
{
    switch (type) {
    case ToolType::Rectange:
        return DefaultAttributes::rectange();
    case ToolType::CalibrationRuler:
        return DefaultAttributes::calibrationRuler();
    case ToolType::Arrow:
        return DefaultAttributes::arrow();
    case ToolType::RedArrow:
        return DefaultAttributes::redArrow();
    case ToolType::BlueArrow:
        return DefaultAttributes::blueArrow();
    case ToolType::GreenArrow:
        return DefaultAttributes::greenArrow();
    case ToolType::WhiteArrow:
        return DefaultAttributes::whiteArrow();
    case ToolType::TextAnnotation:
        return DefaultAttributes::textAnnotation();
    case ToolType::Text:
        return DefaultAttributes::text();
    case ToolType::Counter:
        return DefaultAttributes::counter();
    case ToolType::Scalebar:
        return DefaultAttributes::scalebar();
    default:
        return ToolType::isGeneralTool(type) ? DefaultAttributes::generalTool() : AttributeHash();
    }
}
