#include "camera/panels/PanelCamWhiteBalance.h"

#include "app/Keys.h"
#include "ui_PanelCamWhiteBalance.h"

#include <zolens/MyCamera.h>

#include <QSettings>
#include <QSignalBlocker>
#include <QTimer>

#include <algorithm>

namespace {

constexpr int pollInterval = 1000;  ///< Milliseconds.
constexpr int balancingTime = 1000; ///< Milliseconds until the result of one balancing shows.

bool contains(const std::vector<int>& modes, int mode)
{
    return std::find(modes.begin(), modes.end(), mode) != modes.end();
}

} // namespace

/// The gain of one colour and its controls, which share a row.
struct PanelCamWhiteBalance::Gain
{
    tagCMProperty id;
    QWidget* row;
    QSlider* slider;
    QSpinBox* spinBox;
};

PanelCamWhiteBalance::PanelCamWhiteBalance(QWidget* parent)
    : PanelCamCtrl(parent),
      ui(std::make_unique<Ui::PanelCamWhiteBalance>()),
      timer(new QTimer(this))
{
    ui->setupUi(this);
    finishForm();
    connect(timer, &QTimer::timeout, this, &PanelCamWhiteBalance::autoUpdate);
}

PanelCamWhiteBalance::~PanelCamWhiteBalance() = default;

// Some devices leave the automatic mode when the controls, as they are filled, write to them.
void PanelCamWhiteBalance::updateControls()
{
    if (!device())
        return;
    setEnabled(true);
    showModes();
    const bool automatic = device()->whiteBalanceMode() == CWWhiteBalance_Auto;
    if (device()->isPropertySupported(CMProperty_ColorTemperature))
        fillTemperature();
    else if (hasGain())
        fillGains();
    if (automatic) {
        checkAnew(ui->checkBoxAuto);
        timer->start(pollInterval);
    } else {
        ui->checkBoxAuto->setChecked(false);
    }
}

// The spin boxes hear nothing of the silent sliders.
void PanelCamWhiteBalance::autoUpdate()
{
    if (!device())
        return;
    showPolled(CMProperty_ColorTemperature, ui->sliderTemperature);
    for (const Gain& gain : gains()) {
        showPolled(gain.id, gain.slider);
        const QSignalBlocker blocker(gain.spinBox);
        gain.spinBox->setValue(gain.slider->value());
    }
    showTemperature();
}

// The device is in the manual mode then, and is not told so once more by the check box, which may
// be checked although it is hidden.
void PanelCamWhiteBalance::on_pushButtonOnePush_clicked()
{
    if (!device())
        return;
    device()->setWhiteBalanceMode(CWWhiteBalance_OnePush);
    const QSignalBlocker blocker(ui->checkBoxAuto);
    ui->checkBoxAuto->setChecked(false);
    followMode(false);
    QTimer::singleShot(balancingTime, this, &PanelCamWhiteBalance::autoUpdate);
}

void PanelCamWhiteBalance::on_sliderTemperature_valueChanged(int value)
{
    writeProperty(CMProperty_ColorTemperature, value);
    showTemperature();
}

void PanelCamWhiteBalance::on_sliderRGain_valueChanged(int value)
{
    writeProperty(CMProperty_RedGain, value);
}

void PanelCamWhiteBalance::on_sliderGGain_valueChanged(int value)
{
    writeProperty(CMProperty_GreenGain, value);
}

void PanelCamWhiteBalance::on_sliderBGain_valueChanged(int value)
{
    writeProperty(CMProperty_BlueGain, value);
}

void PanelCamWhiteBalance::on_checkBoxAuto_toggled(bool checked)
{
    if (device())
        device()->setWhiteBalanceMode(checked ? CWWhiteBalance_Auto : CWWhiteBalance_Manual);
    followMode(checked);
}

// As when the controls are filled, the device may have left the automatic mode meanwhile.
void PanelCamWhiteBalance::on_pushButtonDefault_clicked()
{
    if (!device())
        return;
    resetProperty(CMProperty_ColorTemperature, ui->sliderTemperature);
    for (const Gain& gain : gains())
        resetProperty(gain.id, gain.slider);
    if (!ui->checkBoxAuto->isHidden())
        checkAnew(ui->checkBoxAuto);
}

std::array<PanelCamWhiteBalance::Gain, 3> PanelCamWhiteBalance::gains() const
{
    return {{{CMProperty_RedGain, ui->rowRGain, ui->sliderRGain, ui->spinBoxRGain},
             {CMProperty_GreenGain, ui->rowGGain, ui->sliderGGain, ui->spinBoxGGain},
             {CMProperty_BlueGain, ui->rowBGain, ui->sliderBGain, ui->spinBoxBGain}}};
}

bool PanelCamWhiteBalance::hasGain() const
{
    const auto all = gains();
    return std::any_of(all.begin(), all.end(),
                       [this](const Gain& gain) { return device()->isPropertySupported(gain.id); });
}

// Where balancing once is on offer and wished for, it takes the place of the automatic mode.
void PanelCamWhiteBalance::showModes()
{
    const bool wished =
        QSettings()
            .value(Keys::useOnePushWhiteBalance(), Keys::useOnePushWhiteBalanceDefault)
            .toBool();
    std::vector<int> modes;
    device()->whiteBalanceModes(&modes);
    const bool onePush = wished && contains(modes, CWWhiteBalance_OnePush);
    ui->checkBoxAuto->setVisible(contains(modes, CWWhiteBalance_Auto) && !onePush);
    ui->pushButtonOnePush->setVisible(onePush);
}

void PanelCamWhiteBalance::fillTemperature()
{
    ui->frameTemperature->show();
    ui->frameGain->hide();
    fillLabelledSlider(CMProperty_ColorTemperature, nullptr, ui->sliderTemperature,
                       ui->labelTemperature, true);
}

void PanelCamWhiteBalance::fillGains()
{
    ui->frameTemperature->hide();
    ui->frameGain->show();
    for (const Gain& gain : gains())
        fillSpinBoxSlider(gain.id, gain.row, gain.slider, gain.spinBox);
}

// The timer keeps the interval that it has: none, until a camera opens in automatic mode.
void PanelCamWhiteBalance::followMode(bool automatic)
{
    ui->frameTemperature->setEnabled(!automatic);
    ui->frameGain->setEnabled(!automatic);
    if (automatic)
        timer->start();
    else
        timer->stop();
}

void PanelCamWhiteBalance::showTemperature()
{
    if (camera)
        ui->labelTemperature->setText(
            camera->getFormatedProperty(CMProperty_ColorTemperature, true));
}
