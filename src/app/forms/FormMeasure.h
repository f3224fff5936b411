#pragma once

#include <QWidget>

#include <memory>

class FormSidebar;
class GraphicsView;
class PrimitiveAttributesWidget;
class PrimitiveManager;
class QAction;
class QToolButton;
class ZoPopupToolButton;
struct PrimitiveCalibration;

namespace Ui {
class FormMeasure;
}

/// The measure page: the choice of calibration and unit, the grid of tool buttons and the editor of
/// the selected tool's look. Holds no measurement logic; binds its widgets to the tool actions, the
/// tool manager and the list of calibrations. The choice of calibration and the check mark of the
/// list are one state.
class FormMeasure final : public QWidget
{
    Q_OBJECT

public:
    explicit FormMeasure(FormSidebar* parent);
    ~FormMeasure() override;

    /// Called once, when the canvas exists. The view must outlive the page's use.
    void setView(GraphicsView* canvas);

public slots:
    void calibrationChanged(int index);
    void calibrationNameChanged(QString name);
    void calibrationUnitChanged(int index);
    void deleteItems();

private slots:
    void on_toolButtonSaveHash_clicked();

private:
    void makeAttributesEditor();
    void makeScaleBarAction();
    void connectCalibrations();
    void fillUnits();
    void showTools();
    void showTool(QToolButton* button, int type);
    void showPopup(ZoPopupToolButton* button, const QList<QAction*>& actions);
    QString showUnitOf(const PrimitiveCalibration& calibration);
    void disableUnit();
    void refuseCalibration();
    void syncCalibration();

    QAction* actionScaleBar = nullptr;
    std::unique_ptr<Ui::FormMeasure> ui;
    PrimitiveAttributesWidget* attributesWidget = nullptr;
    PrimitiveManager* primitiveManager = nullptr; ///< Null until a view is set.
    GraphicsView* view = nullptr;                 ///< Null until it is set.
    /// The widgets are following the manager and must not write to it.
    bool syncing = false;
};
