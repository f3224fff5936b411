#include "measure/PrimitiveManager.h"

#include "calibration/PrimitiveCalibrationModel.h"
#include "calibration/PrimitiveUnit.h"
#include "canvas/GraphicsScene.h"
#include "canvas/GraphicsView.h"
#include "measure/DimensionKeys.h"
#include "measure/PrimitiveDimensionTool.h"
#include "measure/TextEditing.h"
#include "measure/ToolAttributeEditor.h"
#include "measure/ToolFactory.h"
#include "preferences/ToolAttributes.h"
#include "results/PrimitiveDimensionModel.h"

#include <QCoreApplication>
#include <QDebug>
#include <QGraphicsSceneMouseEvent>
#include <QGraphicsTextItem>
#include <QMessageBox>

#include <algorithm>

namespace {

PrimitiveGeneralTool* toGeneralTool(QGraphicsItem* item)
{
    return Primitive::isGeneralTool(item) ? static_cast<PrimitiveGeneralTool*>(item) : nullptr;
}

QGraphicsItem* toTextTool(QGraphicsItem* item)
{
    return Primitive::isTextTool(item) ? item : nullptr;
}

/// What `convert` gives for each item, without the nulls.
template <typename Items, typename Convert>
auto collect(const Items& items, Convert convert)
{
    QVector<decltype(convert(nullptr))> result;
    result.reserve(items.size());
    for (QGraphicsItem* item : items)
        if (auto* converted = convert(item))
            result.append(converted);
    return result;
}

template <typename List>
List ordered(List ascending, Qt::SortOrder order)
{
    if (order == Qt::DescendingOrder)
        std::reverse(ascending.begin(), ascending.end());
    return ascending;
}

} // namespace

PrimitiveManager::PrimitiveManager(GraphicsScene* scene)
    : graphicsScene(scene),
      model(std::make_unique<PrimitiveDimensionModel>()),
      tools(*scene, *model)
{
    const auto& calibrations = PrimitiveCalibrationModel::instance();
    if (calibrations.rowCount() > 0) {
        calibration = calibrations.calibrationAt(0);
        unitKey = calibration.defaultUnitKey;
    }
    scalebar = createTool(ToolType::Scalebar, this, scene);
    if (scalebar)
        scalebar->setZValue(1.0);
    addTool(scalebar);
}

PrimitiveManager::~PrimitiveManager() = default;

void PrimitiveManager::setAttributesWidget(ToolAttributeEditor* editor)
{
    attributesWidget = editor;
}

bool PrimitiveManager::handleMousePress(QGraphicsSceneMouseEvent* event)
{
    if (mode != Draw)
        return false;
    settleConstruction();
    switch (event->button()) {
    case Qt::LeftButton:
        return handleLeftPress(event->scenePos());
    case Qt::RightButton:
        return handleRightPress();
    default:
        return false;
    }
}

bool PrimitiveManager::handleLeftPress(const QPointF& scenePos)
{
    if (!graphicsScene->sceneRect().contains(scenePos))
        return false;
    PrimitiveGeneralTool* tool = currentTool();
    if (tool && !tool->isFinished()) {
        tool->placePoint(scenePos, true);
        return true;
    }
    graphicsScene->clearSelection();
    // Whoever listens to the selection may have changed the mode.
    if (mode != Draw)
        return false;
    return addTool(createTool(type, this, graphicsScene, scenePos));
}

bool PrimitiveManager::handleRightPress()
{
    if (finishCurrentTool()) {
        qDebug() << "current tool is finished or removed";
        return true;
    }
    if (!graphicsScene->selectedItems().isEmpty()) {
        graphicsScene->clearSelection();
        return true;
    }
    emit changeDragMode(Select, -1);
    return true;
}

bool PrimitiveManager::handleMouseMove(QGraphicsSceneMouseEvent* event)
{
    if (mode != Draw)
        return false;
    PrimitiveGeneralTool* tool = currentTool();
    if (!tool || tool->isFinished() || !graphicsScene->sceneRect().contains(event->scenePos()))
        return false;
    tool->placePoint(event->scenePos(), false);
    return true;
}

bool PrimitiveManager::handleMouseRelease(QGraphicsSceneMouseEvent*)
{
    return false;
}

bool PrimitiveManager::handleMouseDoubleClick(QGraphicsSceneMouseEvent*)
{
    return false;
}

void PrimitiveManager::setDragMode(DragMode newMode, int newType)
{
    settleConstruction();
    finishCurrentTool();
    mode = newMode;
    type = newType;
}

/// Ends what the user is at; true when that took something away from the drawing. A tool that could
/// be finished answers false, and its selection is for the caller to clear.
bool PrimitiveManager::finishCurrentTool()
{
    const QList<QGraphicsItem*> selected = graphicsScene->selectedItems();
    QGraphicsItem* item = constructedTool();
    if (!item && !selected.isEmpty())
        item = selected.first();
    if (PrimitiveGeneralTool* tool = toGeneralTool(item)) {
        if (tool->tryFinish())
            return false;
        removeTool(tool);
        return true;
    }
    if (!item || item->type() != ToolType::Text)
        return false;
    auto* text = static_cast<QGraphicsTextItem*>(item);
    if (!text->toPlainText().isEmpty())
        return leaveEditing(*text);
    removeTools({}, {text});
    return true;
}

PrimitiveGeneralTool* PrimitiveManager::constructedTool() const
{
    return construction && !construction->isFinished() ? construction.data() : nullptr;
}

void PrimitiveManager::settleConstruction()
{
    PrimitiveGeneralTool* tool = constructedTool();
    if (!tool || tool->isSelected())
        return;
    construction.clear();
    if (!tool->tryFinish())
        removeTool(tool);
}

QGraphicsItem* PrimitiveManager::createTool(int type, PrimitiveManager* manager,
                                            GraphicsScene* scene, QPointF pos)
{
    QGraphicsItem* item = makeTool(type, manager, scene, pos);
    if (PrimitiveGeneralTool* tool = toGeneralTool(item))
        tool->setAttributes(toolAttributes(type));
    return item;
}

QGraphicsItem* PrimitiveManager::addTool(QGraphicsItem* item)
{
    if (!item)
        return nullptr;
    settleConstruction();
    PrimitiveGeneralTool* tool = toGeneralTool(item);
    if (tool && !tool->isFinished())
        construction = tool;
    tools.add(item);
    item->setSelected(true);
    return item->type() == ToolType::Text ? nullptr : item;
}

void PrimitiveManager::removeTool(PrimitiveGeneralTool* tool)
{
    removeTools({tool}, {});
}

void PrimitiveManager::removeTools(const QVector<PrimitiveGeneralTool*>& general,
                                   const QVector<QGraphicsItem*>& text)
{
    if (general.contains(construction.data()))
        construction.clear();
    removing = true;
    tools.remove(general, text);
    removing = false;
    editSelection();
}

bool PrimitiveManager::confirmRemoval(const QString& question) const
{
    return QMessageBox::question(graphicsScene->graphicsView(), QCoreApplication::applicationName(),
                                 question, QMessageBox::Yes | QMessageBox::No,
                                 QMessageBox::Yes) == QMessageBox::Yes;
}

void PrimitiveManager::deleteAllTools(bool force)
{
    if (calibrating)
        return;
    const auto general = generalTools(Qt::DescendingOrder);
    const auto text = textTools(Qt::DescendingOrder);
    qDebug() << "size" << general.size();
    qDebug() << "text size" << text.size();
    if (general.isEmpty() && text.isEmpty())
        return;
    if (force || confirmRemoval(tr("Are you sure to remove all items?")))
        removeTools(generalTools(Qt::DescendingOrder), textTools(Qt::DescendingOrder));
}

void PrimitiveManager::deleteSelectedTools()
{
    if (calibrating)
        return;
    const auto general = selectedGeneralTools();
    const auto text = selectedTextTools();
    qDebug() << "size" << general.size();
    qDebug() << "text size" << text.size();
    if (general.isEmpty() && text.isEmpty())
        return;
    if (confirmRemoval(tr("Are you sure to remove all selected items?")))
        removeTools(selectedGeneralTools(), selectedTextTools());
}

QVector<PrimitiveGeneralTool*> PrimitiveManager::generalTools(Qt::SortOrder order) const
{
    return ordered(tools.list().generalTools(), order);
}

QVector<PrimitiveDimensionTool*> PrimitiveManager::dimensionTools(Qt::SortOrder order) const
{
    return ordered(tools.list().dimensionTools(), order);
}

QVector<QGraphicsItem*> PrimitiveManager::textTools(Qt::SortOrder order) const
{
    return ordered(tools.list().textTools(), order);
}

QVector<PrimitiveGeneralTool*> PrimitiveManager::selectedGeneralTools() const
{
    return collect(graphicsScene->selectedItems(), toGeneralTool);
}

QVector<QGraphicsItem*> PrimitiveManager::selectedTextTools() const
{
    return collect(graphicsScene->selectedItems(), toTextTool);
}

PrimitiveGeneralTool* PrimitiveManager::currentTool() const
{
    if (PrimitiveGeneralTool* tool = constructedTool())
        return tool;
    const auto selected = selectedGeneralTools();
    return selected.isEmpty() ? nullptr : selected.first();
}

void PrimitiveManager::selectToolById(int id, bool selected)
{
    if (PrimitiveDimensionTool* tool = tools.list().toolOfRow(id))
        tool->setSelected(selected);
}

void PrimitiveManager::updateScene()
{
    graphicsScene->update(graphicsScene->sceneRect());
}

bool PrimitiveManager::hasScalebar() const
{
    return scalebar;
}

void PrimitiveManager::setScalebarVisible(bool visible)
{
    if (scalebar)
        scalebar->setVisible(visible);
}

bool PrimitiveManager::isScalebarVisible() const
{
    return scalebar && scalebar->isVisible();
}

double PrimitiveManager::penScale() const
{
    if (frozenScale > 0.0)
        return frozenScale > 1.0 ? 1.0 : 1.0 / frozenScale;
    return 1.0 / graphicsScene->graphicsView()->transform().m11();
}

void PrimitiveManager::freezeScale(bool on)
{
    GraphicsView* view = graphicsScene->graphicsView();
    frozenScale = on ? view->transform().m11() : -1.0;
    emit view->resized();
}

void PrimitiveManager::itemSelectedHasChanged(QGraphicsObject* object, bool selected)
{
    if (!removing)
        editSelection();
    if (!selected && object == construction)
        QMetaObject::invokeMethod(this, &PrimitiveManager::settleConstruction,
                                  Qt::QueuedConnection);
    emit toolSelected(object, selected);
}

/// Hands the one selected tool to the attribute editor, or else a selected scale bar.
void PrimitiveManager::editSelection()
{
    if (!attributesWidget)
        return;
    const auto general = selectedGeneralTools();
    const auto text = selectedTextTools();
    QGraphicsItem* target = nullptr;
    if (general.size() == 1 && text.isEmpty())
        target = general.first();
    else if (general.isEmpty() && text.size() == 1)
        target = text.first();
    else if (scalebar && scalebar->isSelected())
        target = scalebar;
    attributesWidget->setByObject(target ? target->toGraphicsObject() : nullptr);
}

double PrimitiveManager::lengthToUnit(double pixels) const
{
    return calibration.lengthToUnit(pixels, unitKey);
}

double PrimitiveManager::areaToUnit(double squarePixels) const
{
    return calibration.areaToUnit(squarePixels, unitKey);
}

QString PrimitiveManager::calibrationName() const
{
    return calibration.name;
}

bool PrimitiveManager::isCalibrationValid() const
{
    return calibration.isValid();
}

QString PrimitiveManager::displayUnitName() const
{
    return PrimitiveUnit::fullName(unitKey);
}

void PrimitiveManager::setCalibration(const QString& name)
{
    const auto record = PrimitiveCalibrationModel::instance().calibrationByName(name);
    setCalibration(record, record.defaultUnitKey);
}

bool PrimitiveManager::setCalibration(const QString& name, const QString& displayUnitKey)
{
    return setCalibration(PrimitiveCalibrationModel::instance().calibrationByName(name),
                          displayUnitKey);
}

bool PrimitiveManager::setCalibration(const PrimitiveCalibration& record,
                                      const QString& displayUnitKey)
{
    if (!record.isValid() || displayUnitKey.isEmpty())
        return false;
    calibration = record;
    unitKey = displayUnitKey;
    recalculateTools();
    return true;
}

void PrimitiveManager::recalculateTools()
{
    for (PrimitiveDimensionTool* tool : dimensionTools(Qt::DescendingOrder)) {
        tool->updateDimensions();
        tool->refreshLabelText();
    }
}

/// The flag comes first: with it on, nothing is deleted, so that the tools stay while the ruler is
/// in use; with it off, everything goes.
void PrimitiveManager::setCalibrationMode(bool on)
{
    calibrating = on;
    deleteAllTools(true);
    if (on)
        addTool(createTool(ToolType::CalibrationRuler, this, graphicsScene));
}

void PrimitiveManager::writeDimensionRow(const PrimitiveDimensionTool* tool, int row,
                                         const QHash<QString, double>& dimensions)
{
    model->setValues(row, dimensions);
    const auto length = dimensions.constFind(DimensionKey::length());
    if (tool->type() == ToolType::CalibrationRuler && length != dimensions.constEnd())
        emit calibrationPixelChanged(length.value());
}
