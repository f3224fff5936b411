#pragma once

#include "measure/ToolTypes.h"
#include "support/CanvasFixture.h"

#include <memory>

/// A canvas and the lines that are drawn on it. A base of the tests of its manager.
class LineCanvas
{
protected:
    /// A finished horizontal line.
    PrimitiveDimensionTool* drawnLine(double y, double length = 100)
    {
        return canvas->drawMeasuring(ToolType::Line, {{50, y}, {50 + length, y}});
    }

    QVector<int> ids() const
    {
        QVector<int> result;
        for (const PrimitiveDimensionTool* tool :
             canvas->manager()->dimensionTools(Qt::AscendingOrder))
            result.append(tool->id());
        return result;
    }

    std::unique_ptr<CanvasFixture> canvas;
};
