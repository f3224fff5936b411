#pragma once

#include "camera/panels/PanelCamCtrl.h"

#include <array>
#include <memory>

class QTimer;

namespace Ui {
class PanelCamWhiteBalance;
}

/// White balance by colour temperature or, on a device without that, by the gains of the colours:
/// automatic with a look at the camera once a second, manual, or balanced once by a button.
class PanelCamWhiteBalance final : public PanelCamCtrl
{
    Q_OBJECT

public:
    explicit PanelCamWhiteBalance(QWidget* parent);
    ~PanelCamWhiteBalance() override;

public slots:
    void updateControls() override;

private slots:
    void autoUpdate();
    void on_pushButtonOnePush_clicked();
    void on_sliderTemperature_valueChanged(int value);
    void on_sliderRGain_valueChanged(int value);
    void on_sliderGGain_valueChanged(int value);
    void on_sliderBGain_valueChanged(int value);
    void on_checkBoxAuto_toggled(bool checked);
    void on_pushButtonDefault_clicked();

private:
    struct Gain;

    std::array<Gain, 3> gains() const;
    bool hasGain() const;
    void showModes();
    void fillTemperature();
    void fillGains();
    /// Polls the device or leaves the controls to the user.
    void followMode(bool automatic);
    void showTemperature();

    std::unique_ptr<Ui::PanelCamWhiteBalance> ui;
    QTimer* timer = nullptr;
};
