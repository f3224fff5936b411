#include "app/forms/FormMeasure.h"

#include "app/forms/FormSidebar.h"
#include "calibration/PrimitiveCalibrationModel.h"
#include "calibration/PrimitiveUnit.h"
#include "canvas/GraphicsView.h"
#include "measure/PrimitiveActionManager.h"
#include "measure/PrimitiveManager.h"
#include "measure/ToolTypes.h"
#include "preferences/PrimitiveAttributesWidget.h"
#include "ui_FormMeasure.h"

#include <QAction>
#include <QDebug>
#include <QMenu>
#include <QMessageBox>
#include <QScopedValueRollback>
#include <QStyledItemDelegate>

namespace {

constexpr int pageMargin = 2;

PrimitiveCalibrationModel& calibrations()
{
    return PrimitiveCalibrationModel::instance();
}

QAction* toolAction(int type)
{
    return PrimitiveActionManager::instance()->actionFor(PrimitiveManager::Draw, type);
}

/// The actions of the tool numbers from `first` to `last`.
QList<QAction*> toolActions(int first, int last)
{
    QList<QAction*> actions;
    for (int type = first; type <= last; ++type)
        actions << toolAction(type);
    return actions;
}

} // namespace

FormMeasure::FormMeasure(FormSidebar* parent)
    : QWidget(parent),
      ui(std::make_unique<Ui::FormMeasure>())
{
    ui->setupUi(this);
    for (QPushButton* title : {ui->categoryTitle, ui->categoryTitle_2, ui->categoryTitle_3})
        title->setObjectName(QStringLiteral("categoryTitle"));
    layout()->setContentsMargins(pageMargin, pageMargin, pageMargin, pageMargin);
    makeAttributesEditor();
    connectCalibrations();
    fillUnits();
    ui->toolButtonAddNew->setIcon(QIcon::fromTheme(QStringLiteral("add-new")));
    ui->toolButtonList->setIcon(QIcon::fromTheme(QStringLiteral("modify")));
    ui->toolButtonSaveHash->setIcon(QIcon::fromTheme(QStringLiteral("save")));
    makeScaleBarAction();
}

FormMeasure::~FormMeasure() = default;

void FormMeasure::setView(GraphicsView* canvas)
{
    view = canvas;
    primitiveManager = canvas->manager();
    primitiveManager->setAttributesWidget(attributesWidget);
    PrimitiveActionManager::instance()->setGraphicsView(view);
    showTools();
    actionScaleBar->setEnabled(primitiveManager->hasScalebar());
    actionScaleBar->setChecked(primitiveManager->isScalebarVisible());
    connect(actionScaleBar, &QAction::toggled, view, &GraphicsView::showScalebar);
    syncCalibration();
}

void FormMeasure::calibrationChanged(int index)
{
    if (index < 0 || !primitiveManager || syncing)
        return;
    const PrimitiveCalibration calibration = calibrations().calibrationAt(index);
    ui->comboBoxCalibrationName->setCurrentText(calibration.name);
    const QString unitKey = showUnitOf(calibration);
    if (!primitiveManager->setCalibration(calibration, unitKey))
        refuseCalibration();
}

// NOLINTNEXTLINE(performance-unnecessary-value-param): the slot takes its text by value
void FormMeasure::calibrationNameChanged(QString name)
{
    if (name.isEmpty() || !primitiveManager)
        return;
    qDebug(name == PrimitiveCalibrationModel::pixelRowName() ? " Measure in pixels"
                                                             : " Measure by actual unit");
    const PrimitiveCalibration calibration = calibrations().calibrationByName(name);
    ui->comboBoxCalibrationName->setCurrentText(calibration.name);
    const QString unitKey = showUnitOf(calibration);
    if (!primitiveManager->setCalibration(name, unitKey))
        refuseCalibration();
}

void FormMeasure::calibrationUnitChanged(int index)
{
    const QString key = ui->comboBoxCalibrationUnit->itemData(index).toString();
    if (primitiveManager && !syncing && !key.isEmpty())
        primitiveManager->setCalibration(ui->comboBoxCalibrationName->currentText(), key);
}

void FormMeasure::deleteItems()
{
    if (primitiveManager)
        primitiveManager->deleteSelectedTools();
}

void FormMeasure::on_toolButtonSaveHash_clicked()
{
    attributesWidget->saveHash();
}

void FormMeasure::makeAttributesEditor()
{
    attributesWidget = new PrimitiveAttributesWidget(this);
    ui->scrollAreaAttributes->setWidget(attributesWidget);
    connect(attributesWidget, &PrimitiveAttributesWidget::enabled, ui->toolButtonSaveHash,
            &QToolButton::setEnabled);
}

void FormMeasure::makeScaleBarAction()
{
    actionScaleBar =
        new QAction(QIcon::fromTheme(QStringLiteral("scale-bar")), tr("Scale bar"), this);
    actionScaleBar->setToolTip(tr("Scale bar"));
    actionScaleBar->setStatusTip(tr("Show scale bar"));
    actionScaleBar->setCheckable(true);
    ui->toolButtonScale->setDefaultAction(actionScaleBar);
}

void FormMeasure::connectCalibrations()
{
    QComboBox* names = ui->comboBoxCalibrationName;
    names->setItemDelegate(new QStyledItemDelegate(names));
    connect(names, qOverload<int>(&QComboBox::currentIndexChanged), &calibrations(),
            &PrimitiveCalibrationModel::checkRow);
    connect(&calibrations(), &PrimitiveCalibrationModel::rowChecked, this,
            &FormMeasure::calibrationChanged);
    names->setModel(&calibrations());
    names->setModelColumn(PrimitiveCalibrationModel::Name);
    names->setCurrentIndex(-1);
}

void FormMeasure::fillUnits()
{
    QComboBox* units = ui->comboBoxCalibrationUnit;
    units->setItemDelegate(new QStyledItemDelegate(units));
    connect(units, qOverload<int>(&QComboBox::currentIndexChanged), this,
            &FormMeasure::calibrationUnitChanged);
    const QMap<QString, QString> fullNames = PrimitiveUnit::fullNameList();
    for (auto unit = fullNames.begin(); unit != fullNames.end(); ++unit)
        units->addItem(unit.value(), unit.key());
}

void FormMeasure::showTools()
{
    auto* actions = PrimitiveActionManager::instance();
    ui->toolButtonDrag->setDefaultAction(actions->actionFor(PrimitiveManager::Drag, -1));
    ui->toolButtonSelect->setDefaultAction(actions->actionFor(PrimitiveManager::Select, -1));
    showPopup(ui->toolButtonDelete, {actions->deleteAction(), actions->deleteAllAction()});

    showTool(ui->toolButtonLine, ToolType::Line);
    showTool(ui->toolButtonPolyline, ToolType::Polyline);
    showTool(ui->toolButtonRectange, ToolType::Rectange);
    showTool(ui->toolButtonPolygon, ToolType::Polygon);
    showTool(ui->toolButtonParallel, ToolType::Parallel);
    showPopup(ui->toolButtonPerpendicular,
              toolActions(ToolType::Perpendicular, ToolType::MultiplePerpendicular));
    showPopup(ui->toolButtonAngle, toolActions(ToolType::Angle, ToolType::Angle4));
    showTool(ui->toolButtonArc, ToolType::Arc);
    showPopup(ui->toolButtonCircle, toolActions(ToolType::Circle, ToolType::Circle3));
    showTool(ui->toolButtonAnnulus, ToolType::Annulus);
    showPopup(ui->toolButtonTwoCircle, toolActions(ToolType::TwoCircle, ToolType::TwoCircle3));

    showTool(ui->toolButtonCounter, ToolType::Counter);
    showTool(ui->toolButtonText, ToolType::TextAnnotation);
    showPopup(ui->toolButtonArrow, toolActions(ToolType::Arrow, ToolType::WhiteArrow));
}

void FormMeasure::showTool(QToolButton* button, int type)
{
    button->setDefaultAction(toolAction(type));
}

void FormMeasure::showPopup(ZoPopupToolButton* button, const QList<QAction*>& actions)
{
    auto* menu = new QMenu(button);
    menu->addActions(actions);
    button->setPopupMenu(menu, QToolButton::MenuButtonPopup);
}

/// Selects the calibration's own unit, the first one if the list lacks it; gives the unit's key.
QString FormMeasure::showUnitOf(const PrimitiveCalibration& calibration)
{
    if (calibration.name == PrimitiveCalibrationModel::pixelRowName()) {
        disableUnit();
        return PrimitiveUnit::pixelKey();
    }
    QComboBox* units = ui->comboBoxCalibrationUnit;
    const int found =
        units->findData(calibration.defaultUnitKey, Qt::UserRole, Qt::MatchCaseSensitive);
    units->setCurrentIndex(qMax(found, 0));
    units->setEnabled(true);
    return units->currentData().toString();
}

void FormMeasure::disableUnit()
{
    ui->comboBoxCalibrationUnit->setCurrentIndex(-1);
    ui->comboBoxCalibrationUnit->setEnabled(false);
}

void FormMeasure::refuseCalibration()
{
    QMessageBox::information(this, tr("Error"),
                             tr("Unable to switch to this calibration configuration, "
                                "re-calibration it or use other configuration."),
                             QMessageBox::Ok);
    syncCalibration();
}

/// Brings the widgets, and with them the check mark of the list, in line with the manager.
void FormMeasure::syncCalibration()
{
    const QScopedValueRollback<bool> guard(syncing, true);
    const bool valid = primitiveManager->isCalibrationValid();
    qDebug() << "  is current calibration valid? " << valid;
    if (!valid)
        return;
    const QString name = primitiveManager->calibrationName();
    qDebug() << "  current calibration name: " << name;
    ui->comboBoxCalibrationName->setCurrentText(name);
    if (name == PrimitiveCalibrationModel::pixelRowName()) {
        disableUnit();
        return;
    }
    ui->comboBoxCalibrationUnit->setCurrentText(primitiveManager->displayUnitName());
    ui->comboBoxCalibrationUnit->setEnabled(true);
}
