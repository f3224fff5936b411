#pragma once

#include "camera/panels/PanelCamCtrl.h"

#include <array>
#include <memory>

namespace Ui {
class PanelCamColorAdjustment;
}

/// The colour mode and the properties of the picture that a number sets.
class PanelCamColorAdjustment final : public PanelCamCtrl
{
    Q_OBJECT

public:
    explicit PanelCamColorAdjustment(QWidget* parent);
    ~PanelCamColorAdjustment() override;

public slots:
    void updateControls() override;

private slots:
    void on_sliderBrightness_valueChanged(int value);
    void on_sliderDenoise_valueChanged(int value);
    void on_sliderSharpness_valueChanged(int value);
    void on_sliderGamma_valueChanged(int value);
    void on_sliderHue_valueChanged(int value);
    void on_sliderSaturation_valueChanged(int value);
    void on_sliderContrast_valueChanged(int value);
    void on_pushButtonDefault_clicked();
    void on_comboBoxColorMode_currentIndexChanged(int index);

private:
    struct Row;

    /// From the top down.
    std::array<Row, 7> rows() const;

    std::unique_ptr<Ui::PanelCamColorAdjustment> ui;
};
