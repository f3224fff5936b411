#include "measure/ToolList.h"

#include "measure/PrimitiveDimensionTool.h"

#include <algorithm>

namespace {

template <typename Tool>
void removeFrom(QVector<Tool*>& tools, const QSet<QGraphicsItem*>& items)
{
    const auto gone = std::remove_if(tools.begin(), tools.end(),
                                     [&](Tool* tool) { return items.contains(tool); });
    tools.erase(gone, tools.end());
}

} // namespace

void ToolList::add(QGraphicsItem* item)
{
    if (Primitive::isGeneralTool(item))
        general << static_cast<PrimitiveGeneralTool*>(item);
    if (Primitive::isDimensionTool(item))
        dimension << static_cast<PrimitiveDimensionTool*>(item);
    if (Primitive::isTextTool(item))
        text << item;
}

void ToolList::remove(const QSet<QGraphicsItem*>& items)
{
    removeFrom(general, items);
    removeFrom(dimension, items);
    removeFrom(text, items);
}

PrimitiveDimensionTool* ToolList::toolOfRow(int id) const
{
    const auto found = std::lower_bound(
        dimension.begin(), dimension.end(), id,
        [](const PrimitiveDimensionTool* tool, int row) { return tool->id() < row; });
    return found != dimension.end() && (*found)->id() == id ? *found : nullptr;
}
