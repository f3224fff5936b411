#pragma once

#include "measure/ToolTypes.h"
#include "preferences/ToolAttributes.h"
#include "support/CanvasFixture.h"

#include <QPainter>

#include <memory>

/// A finished tool with points that the test chooses; without its own drawing of an outline.
class FreeTool final : public PrimitiveGeneralTool
{
public:
    FreeTool(const CanvasFixture& canvas, const QVector<ControlPoint>& corners)
        : PrimitiveGeneralTool(canvas.manager(), canvas.scene(), QPointF(), true)
    {
        for (const ControlPoint& corner : corners)
            addControlPoint(corner.pos, corner.movesY, corner.movesX);
        FreeTool::setAttributes(toolAttributes(ToolType::Line));
    }

    int type() const override { return ToolType::Arrow; }
    int minPointCount() const override { return 2; }
    void paint(QPainter* painter, const QStyleOptionGraphicsItem* option, QWidget*) override
    {
        drawControlPointsIfSelected(painter, option);
    }

    using PrimitiveGeneralTool::drawAngleArc;
    using PrimitiveGeneralTool::drawControlPoints;
    using PrimitiveGeneralTool::drawCrossMark;
};

/// A canvas, tools of chosen points on it, and lines that are drawn there. A base of the tests of
/// what all tools have in common.
class FreeTools
{
protected:
    static inline const ControlPoint free1{QPointF(100, 100), true, true};
    static inline const ControlPoint free2{QPointF(200, 100), true, true};

    FreeTool* add(const QVector<ControlPoint>& corners)
    {
        auto* tool = new FreeTool(*canvas, corners);
        canvas->manager()->addTool(tool);
        return tool;
    }

    /// From (100, y) to (300, y); the label stands in the middle.
    PrimitiveGeneralTool* drawnLine(double y = 100)
    {
        return canvas->draw(ToolType::Line, {{100, y}, {300, y}});
    }

    std::unique_ptr<CanvasFixture> canvas;
};
