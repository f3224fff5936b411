#pragma once

#include "measure/ToolTypes.h"

/// The second base of every tool. Holds nothing; carries the tests of what family a tool belongs
/// to, for an item (null belongs to none) and for a tool number.
class Primitive
{
public:
    static bool isGeneralTool(const QGraphicsItem* item)
    {
        return item && isGeneralTool(item->type());
    }
    static bool isGeneralTool(int type) { return ToolType::isGeneralTool(type); }
    static bool isDimensionTool(const QGraphicsItem* item)
    {
        return item && isDimensionTool(item->type());
    }
    static bool isDimensionTool(int type) { return ToolType::isDimensionTool(type); }
    static bool isTextTool(const QGraphicsItem* item) { return item && isTextTool(item->type()); }
    static bool isTextTool(int type) { return ToolType::isTextTool(type); }
    static bool isScalebarTool(const QGraphicsItem* item)
    {
        return item && isScalebarTool(item->type());
    }
    static bool isScalebarTool(int type) { return ToolType::isScalebarTool(type); }

protected:
    ~Primitive() = default;
};
