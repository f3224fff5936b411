#include "preferences/PrimitiveAttributesWidget.h"

#include "measure/PrimitiveGeneralTool.h"
#include "measure/ToolTypes.h"

PrimitiveAttributesWidget::PrimitiveAttributesWidget(QWidget* parent) : QWidget(parent)
{
    setEnabled(false);
}

void PrimitiveAttributesWidget::saveHash()
{
    if (type < 0)
        return;
    if (hash)
        saveToolAttributes(type, *hash);
    else if (object && ToolType::isGeneralTool(object->type()))
        saveToolAttributes(object->type(),
                           static_cast<PrimitiveGeneralTool*>(object.data())->attributes());
}

void PrimitiveAttributesWidget::setByObject(QGraphicsObject* target)
{
    announce(target);
    object = target;
    hash = nullptr;
    type = target ? target->type() : -1;
}

void PrimitiveAttributesWidget::setByHash(int toolType, QHash<QString, QVariant>& attributes)
{
    const bool edits = toolType > 0;
    announce(edits);
    object = nullptr;
    hash = edits ? &attributes : nullptr;
    type = edits ? toolType : -1;
}

void PrimitiveAttributesWidget::announce(bool enable)
{
    setEnabled(enable);
    emit enabled(enable);
}
