#include "camera/panels/PanelCamExposure.h"

#include "ui_PanelCamExposure.h"

#include <zolens/MyCamera.h>

#include <QTimer>

namespace {

constexpr int pollInterval = 1000; ///< Milliseconds.

} // namespace

PanelCamExposure::PanelCamExposure(QWidget* parent)
    : PanelCamCtrl(parent),
      ui(std::make_unique<Ui::PanelCamExposure>()),
      timer(new QTimer(this))
{
    ui->setupUi(this);
    finishForm();
    connect(timer, &QTimer::timeout, this, &PanelCamExposure::autoUpdate);
}

PanelCamExposure::~PanelCamExposure() = default;

void PanelCamExposure::updateControls()
{
    if (!device())
        return;
    setEnabled(true);
    fillLabelledSlider(CMProperty_ExposureTime, ui->groupTime, ui->sliderTime, ui->labelTime, true);
    fillLabelledSlider(CMProperty_ExposureTarget, ui->groupTarget, ui->sliderTarget,
                       ui->labelTarget, false);
    fillLabelledSlider(CMProperty_Gain, ui->groupGain, ui->sliderGain, ui->labelGain, true);
    checkAnew(ui->checkBoxAuto);
    timer->start(pollInterval);
}

void PanelCamExposure::autoUpdate()
{
    if (!device())
        return;
    showPolled(CMProperty_ExposureTime, ui->sliderTime);
    showPolled(CMProperty_Gain, ui->sliderGain);
    showTime();
    showGain();
}

void PanelCamExposure::on_checkBoxAuto_toggled(bool checked)
{
    if (device())
        device()->setAutoExposure(checked);
    ui->sliderTime->setEnabled(!checked);
    ui->sliderGain->setEnabled(!checked);
    ui->sliderTarget->setEnabled(checked);
    if (checked) {
        timer->start();
        return;
    }
    writeProperty(CMProperty_ExposureTime, ui->sliderTime->value());
    writeProperty(CMProperty_Gain, ui->sliderGain->value());
    timer->stop();
}

void PanelCamExposure::on_sliderTarget_valueChanged(int value)
{
    qDebug("exposure target value changed");
    writeProperty(CMProperty_ExposureTarget, value);
    ui->labelTarget->setNum(value);
}

void PanelCamExposure::on_sliderTime_valueChanged(int value)
{
    qDebug("exposure time value changed");
    writeProperty(CMProperty_ExposureTime, value);
    showTime();
}

void PanelCamExposure::on_sliderGain_valueChanged(int value)
{
    writeProperty(CMProperty_Gain, value);
    showGain();
}

void PanelCamExposure::showTime()
{
    if (camera)
        ui->labelTime->setText(camera->getFormatedProperty(CMProperty_ExposureTime, false));
}

void PanelCamExposure::showGain()
{
    if (camera)
        ui->labelGain->setText(camera->getFormatedProperty(CMProperty_Gain, false));
}
