#pragma once

#include <QPointF>

class GraphicsScene;
class PrimitiveManager;
class QGraphicsItem;

/// A new tool of that number, at a scene position and under construction; null for a number that no
/// tool is made for. Its look is not set yet. Owned by the caller.
QGraphicsItem* makeTool(int type, PrimitiveManager* manager, GraphicsScene* scene,
                        const QPointF& pos);
