#pragma once

#include "measure/ToolList.h"

class PrimitiveDimensionModel;
class QGraphicsScene;

/// The tools that stand on a scene, with their rows in the dimension table: puts them there, takes
/// them away and keeps their numbers dense and in stacking order. Scene and table are the
/// manager's, and so is the choice of what to add and to remove. GUI thread.
class SceneTools final
{
public:
    SceneTools(QGraphicsScene& scene, PrimitiveDimensionModel& table);

    const ToolList& list() const { return tools; }

    /// Hands an item to the scene; a dimension tool gets the next row. Items that are no tools are
    /// only handed over.
    void add(QGraphicsItem* item);
    /// Deletes tools. Table, ids and labels end as if they had gone one after the other, but are
    /// numbered once.
    void remove(const QVector<PrimitiveGeneralTool*>& general, const QVector<QGraphicsItem*>& text);

private:
    void giveRow(PrimitiveDimensionTool* tool);
    void removeRows(const QVector<PrimitiveGeneralTool*>& general);
    void deleteItem(QGraphicsItem* item);
    void renumberTools();
    void renumberCounters();

    QGraphicsScene& scene;
    PrimitiveDimensionModel& table;
    ToolList tools;
};
