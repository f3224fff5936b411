#pragma once

#include <QSet>
#include <QVector>

class PrimitiveDimensionTool;
class PrimitiveGeneralTool;
class QGraphicsItem;

/// The tools of a scene by family, in the order in which they were added. That is their stacking
/// order, which the scene itself does not tell: without an index it gives its items unsorted. Owns
/// nothing.
class ToolList final
{
public:
    void add(QGraphicsItem* item);
    void remove(const QSet<QGraphicsItem*>& items);

    /// In stacking order.
    const QVector<PrimitiveGeneralTool*>& generalTools() const { return general; }
    const QVector<PrimitiveDimensionTool*>& dimensionTools() const { return dimension; }
    const QVector<QGraphicsItem*>& textTools() const { return text; }

    /// The dimension tool of a table row; null when there is none.
    PrimitiveDimensionTool* toolOfRow(int id) const;

private:
    QVector<PrimitiveGeneralTool*> general;
    QVector<PrimitiveDimensionTool*> dimension; ///< Their ids ascend.
    QVector<QGraphicsItem*> text;
};
