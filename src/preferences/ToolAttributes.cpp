#include "preferences/ToolAttributes.h"

#include "app/Keys.h"
#include "measure/ToolTypes.h"

#include <QSettings>

namespace {

bool isColouredArrow(int type)
{
    return type >= ToolType::RedArrow && type <= ToolType::WhiteArrow;
}

/// Empty for a number that is no tool.
QString settingsKey(int type)
{
    switch (type) {
    case ToolType::Rectange:
        return Keys::attributesRectange();
    case ToolType::CalibrationRuler:
        return Keys::attributesCalibrationRuler();
    case ToolType::Arrow:
        return Keys::attributesArrow();
    case ToolType::TextAnnotation:
        return Keys::attributesTextAnnotation();
    case ToolType::Text:
        return Keys::attributesText();
    case ToolType::Counter:
        return Keys::attributesCounter();
    case ToolType::Scalebar:
        return Keys::attributesScalebar();
    default:
        return ToolType::isGeneralTool(type) ? Keys::attributesGeneralTool() : QString();
    }
}

} // namespace

AttributeHash toolAttributes(int type)
{
    AttributeHash defaults = defaultAttributes(type);
    const QString key = settingsKey(type);
    if (key.isEmpty() || isColouredArrow(type))
        return defaults;
    return QSettings().value(key, QVariant(defaults)).toHash();
}

void saveToolAttributes(int type, const AttributeHash& attributes)
{
    const QString key = settingsKey(type);
    if (!key.isEmpty())
        QSettings().setValue(key, QVariant(attributes));
}
