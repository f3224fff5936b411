#include "measure/SceneTools.h"

#include "measure/PrimitiveDimensionTool.h"
#include "results/PrimitiveDimensionModel.h"

#include <QDebug>
#include <QGraphicsScene>
#include <QGraphicsTextItem>

#include <algorithm>

SceneTools::SceneTools(QGraphicsScene& toolScene, PrimitiveDimensionModel& toolTable)
    : scene(toolScene),
      table(toolTable)
{
}

void SceneTools::add(QGraphicsItem* item)
{
    if (Primitive::isDimensionTool(item))
        giveRow(static_cast<PrimitiveDimensionTool*>(item));
    tools.add(item);
    scene.addItem(item);
    if (item->type() == ToolType::Counter)
        renumberCounters();
}

void SceneTools::giveRow(PrimitiveDimensionTool* tool)
{
    const int row = tools.dimensionTools().size();
    table.insertRow(row);
    tool->setToolId(row);
    tool->updateDimensions();
    tool->refreshLabelText();
}

void SceneTools::remove(const QVector<PrimitiveGeneralTool*>& general,
                        const QVector<QGraphicsItem*>& text)
{
    removeRows(general);
    QSet<QGraphicsItem*> gone(text.begin(), text.end());
    for (PrimitiveGeneralTool* tool : general)
        gone.insert(tool);
    tools.remove(gone);
    for (PrimitiveGeneralTool* tool : general)
        deleteItem(tool);
    for (QGraphicsItem* item : text)
        deleteItem(item);
    renumberTools();
    renumberCounters();
}

/// Removes the rows of those that have one; rows that stand together go as one range.
void SceneTools::removeRows(const QVector<PrimitiveGeneralTool*>& general)
{
    QVector<int> rows;
    for (const PrimitiveGeneralTool* tool : general) {
        if (Primitive::isDimensionTool(tool))
            rows.append(tool->id());
    }
    std::sort(rows.begin(), rows.end());
    while (!rows.isEmpty()) {
        const int last = rows.takeLast();
        int first = last;
        while (!rows.isEmpty() && rows.last() == first - 1)
            first = rows.takeLast();
        table.removeRows(first, last - first + 1);
    }
}

void SceneTools::deleteItem(QGraphicsItem* item)
{
    scene.removeItem(item);
    delete item;
}

/// A number that stays the same needs no new label.
void SceneTools::renumberTools()
{
    int id = 0;
    for (PrimitiveDimensionTool* tool : tools.dimensionTools()) {
        if (tool->id() != id)
            tool->setToolId(id);
        ++id;
    }
}

void SceneTools::renumberCounters()
{
    int number = 0;
    for (QGraphicsItem* item : tools.textTools()) {
        if (item->type() != ToolType::Counter)
            continue;
        qDebug() << "refreshToolTextCounterId" << item;
        static_cast<QGraphicsTextItem*>(item)->setPlainText(QString::number(number++, 10));
    }
}
