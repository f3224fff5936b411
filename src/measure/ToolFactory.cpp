#include "measure/ToolFactory.h"

#include "measure/ToolTypes.h"
#include "measure/tools/AngleTools.h"
#include "measure/tools/ArrowTool.h"
#include "measure/tools/LineTools.h"

QGraphicsItem* makeTool(int type, PrimitiveManager* manager, GraphicsScene* scene,
                        const QPointF& pos)
{
    switch (type) {
    case ToolType::Arrow:
    case ToolType::RedArrow:
    case ToolType::BlueArrow:
    case ToolType::GreenArrow:
    case ToolType::WhiteArrow:
        return new PrimitiveToolArrow(manager, scene, pos);
    case ToolType::Line:
        return new PrimitiveToolLine(manager, scene, pos);
    case ToolType::Polyline:
        return new PrimitiveToolPolyline(manager, scene, pos);
    case ToolType::Polygon:
        return new PrimitiveToolPolygon(manager, scene, pos);
    case ToolType::Angle:
        return new PrimitiveToolAngle(manager, scene, pos);
    case ToolType::Angle4:
        return new PrimitiveToolAngle4(manager, scene, pos);
    default:
        return nullptr;
    }
}
