#include "camera/panels/PanelCamColorAdjustment.h"

#include "ui_PanelCamColorAdjustment.h"

/// A property and its controls.
struct PanelCamColorAdjustment::Row
{
    tagCMProperty id;
    QGroupBox* group;
    QSlider* slider;
    QSpinBox* spinBox;
};

PanelCamColorAdjustment::PanelCamColorAdjustment(QWidget* parent)
    : PanelCamCtrl(parent),
      ui(std::make_unique<Ui::PanelCamColorAdjustment>())
{
    ui->setupUi(this);
    finishForm();
}

PanelCamColorAdjustment::~PanelCamColorAdjustment() = default;

void PanelCamColorAdjustment::updateControls()
{
    if (!device())
        return;
    setEnabled(true);
    fillCombo(CMProperty_ColorMode, ui->groupColorMode, ui->comboBoxColorMode);
    for (const Row& row : rows())
        fillSpinBoxSlider(row.id, row.group, row.slider, row.spinBox);
}

void PanelCamColorAdjustment::on_sliderBrightness_valueChanged(int value)
{
    writeProperty(CMProperty_Brightness, value);
}

void PanelCamColorAdjustment::on_sliderDenoise_valueChanged(int value)
{
    writeProperty(CMProperty_Denoise, value);
}

void PanelCamColorAdjustment::on_sliderSharpness_valueChanged(int value)
{
    writeProperty(CMProperty_Sharpness, value);
}

void PanelCamColorAdjustment::on_sliderGamma_valueChanged(int value)
{
    writeProperty(CMProperty_Gamma, value);
}

void PanelCamColorAdjustment::on_sliderHue_valueChanged(int value)
{
    writeProperty(CMProperty_Hue, value);
}

void PanelCamColorAdjustment::on_sliderSaturation_valueChanged(int value)
{
    writeProperty(CMProperty_Saturation, value);
}

void PanelCamColorAdjustment::on_sliderContrast_valueChanged(int value)
{
    writeProperty(CMProperty_Contrast, value);
}

void PanelCamColorAdjustment::on_pushButtonDefault_clicked()
{
    if (!device())
        return;
    if (const auto mode = resetProperty(CMProperty_ColorMode))
        ui->comboBoxColorMode->setCurrentIndex(*mode);
    for (const Row& row : rows())
        resetProperty(row.id, row.slider);
}

// The position in the list is the value.
void PanelCamColorAdjustment::on_comboBoxColorMode_currentIndexChanged(int index)
{
    if (index >= 0)
        writeProperty(CMProperty_ColorMode, index);
}

std::array<PanelCamColorAdjustment::Row, 7> PanelCamColorAdjustment::rows() const
{
    return {{
        {CMProperty_Brightness, ui->groupBrightness, ui->sliderBrightness, ui->spinBoxBrightness},
        {CMProperty_Contrast, ui->groupContrast, ui->sliderContrast, ui->spinBoxContrast},
        {CMProperty_Saturation, ui->groupSaturation, ui->sliderSaturation, ui->spinBoxSaturation},
        {CMProperty_Hue, ui->groupHue, ui->sliderHue, ui->spinBoxHue},
        {CMProperty_Gamma, ui->groupGamma, ui->sliderGamma, ui->spinBoxGamma},
        {CMProperty_Sharpness, ui->groupSharpness, ui->sliderSharpness, ui->spinBoxSharpness},
        {CMProperty_Denoise, ui->groupDenoise, ui->sliderDenoise, ui->spinBoxDenoise},
    }};
}
