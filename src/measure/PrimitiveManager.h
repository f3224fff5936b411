#pragma once

#include "calibration/PrimitiveCalibration.h"
#include "measure/SceneTools.h"

#include <QHash>
#include <QObject>
#include <QPointF>
#include <QPointer>
#include <QString>
#include <QVector>

#include <memory>

class GraphicsScene;
class PrimitiveDimensionModel;
class PrimitiveDimensionTool;
class PrimitiveGeneralTool;
class QGraphicsItem;
class QGraphicsObject;
class QGraphicsSceneMouseEvent;
class ToolAttributeEditor;

/// Coordinates the tools on one scene: turns mouse events into the building of tools, creates,
/// numbers and deletes them, keeps the table of values in step, and holds the calibration and the
/// display unit. Owned by the scene. GUI thread.
class PrimitiveManager : public QObject
{
    Q_OBJECT

public:
    enum DragMode {
        Drag = 0,   ///< The mouse pans the canvas; items take no input.
        Select = 1, ///< Items can be selected, moved and adjusted.
        Draw = 2,   ///< A press creates or continues a tool of the current tool type.
    };
    Q_ENUM(DragMode)

    explicit PrimitiveManager(GraphicsScene* scene);
    ~PrimitiveManager() override;

    DragMode dragMode() const { return mode; }
    int toolType() const { return type; }
    PrimitiveDimensionModel* dimensionModel() const { return model.get(); }
    void setAttributesWidget(ToolAttributeEditor* editor);

    // Input of the scene. The result says whether the event was consumed.
    bool handleMousePress(QGraphicsSceneMouseEvent* event);
    bool handleMouseMove(QGraphicsSceneMouseEvent* event);
    bool handleMouseRelease(QGraphicsSceneMouseEvent* event);
    bool handleMouseDoubleClick(QGraphicsSceneMouseEvent* event);
    /// A tool under construction that has lost its selection can no longer be reached: it is
    /// finished or, with too few points, removed.
    void settleConstruction();
    void setDragMode(DragMode mode, int type);

    // Tools.
    /// A new tool of that number at a scene position, with the attributes stored for it; null for a
    /// number that no tool is made for. Owned by the caller until addTool().
    static QGraphicsItem* createTool(int type, PrimitiveManager* manager, GraphicsScene* scene,
                                     QPointF pos = QPointF());
    /// Puts a tool into the scene, which owns it from now on, and selects it. Null for null.
    QGraphicsItem* addTool(QGraphicsItem* item);
    void removeTool(PrimitiveGeneralTool* tool);
    void deleteAllTools(bool force);
    void deleteSelectedTools();
    /// In stacking order, ascending from the lowest.
    QVector<PrimitiveGeneralTool*> generalTools(Qt::SortOrder order) const;
    QVector<PrimitiveDimensionTool*> dimensionTools(Qt::SortOrder order) const;
    QVector<QGraphicsItem*> textTools(Qt::SortOrder order) const;
    QVector<PrimitiveGeneralTool*> selectedGeneralTools() const;
    QVector<QGraphicsItem*> selectedTextTools() const;
    /// The first selected general tool, the one under construction before all others; or null.
    PrimitiveGeneralTool* currentTool() const;
    void selectToolById(int id, bool selected);
    void updateScene();

    bool hasScalebar() const;
    void setScalebarVisible(bool visible);
    bool isScalebarVisible() const;

    // Scale.
    /// The factor from screen pixels to scene units by which tools keep their size on screen.
    double penScale() const;
    /// Holds the scale for a render to an image at the view's present zoom, or lets it go.
    void freezeScale(bool on);
    /// The zoom of the render that is running, or -1.
    double fixedScale() const { return frozenScale; }

    // Calibration.
    double lengthToUnit(double pixels) const;
    double areaToUnit(double squarePixels) const;
    QString calibrationName() const;
    bool isCalibrationValid() const;
    const QString& displayUnitKey() const { return unitKey; }
    QString displayUnitName() const;
    void setCalibrationMode(bool on);
    bool isCalibrating() const { return calibrating; }

    /// Writes a tool's values into its table row, keys that the table lacks left out.
    void writeDimensionRow(const PrimitiveDimensionTool* tool, int row,
                           const QHash<QString, double>& dimensions);

public slots:
    void setCalibration(const QString& name);
    bool setCalibration(const QString& name, const QString& displayUnitKey);
    bool setCalibration(const PrimitiveCalibration& calibration, const QString& displayUnitKey);
    void itemSelectedHasChanged(QGraphicsObject* object, bool selected);

signals:
    void changeDragMode(PrimitiveManager::DragMode mode, int tooltype);
    void calibrationPixelChanged(double pixel);
    void toolSelected(QGraphicsObject* object, bool selected);

private:
    bool handleLeftPress(const QPointF& scenePos);
    bool handleRightPress();
    bool finishCurrentTool();
    PrimitiveGeneralTool* constructedTool() const;
    void removeTools(const QVector<PrimitiveGeneralTool*>& general,
                     const QVector<QGraphicsItem*>& text);
    bool confirmRemoval(const QString& question) const;
    void editSelection();
    void recalculateTools();

    ToolAttributeEditor* attributesWidget = nullptr;
    GraphicsScene* graphicsScene = nullptr;
    QGraphicsItem* scalebar = nullptr; ///< Null while there is no such tool.
    DragMode mode = Drag;
    int type = -1;
    std::unique_ptr<PrimitiveDimensionModel> model;
    PrimitiveCalibration calibration;
    QString unitKey;
    bool calibrating = false;
    double frozenScale = -1.0;
    SceneTools tools;
    QPointer<PrimitiveGeneralTool> construction; ///< The last tool that was added unfinished.
    bool removing = false; ///< The editor hears of its target once, when all tools are gone.
};
