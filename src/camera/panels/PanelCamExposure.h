#pragma once

#include "camera/panels/PanelCamCtrl.h"

#include <memory>

class QTimer;

namespace Ui {
class PanelCamExposure;
}

/// Exposure and gain. In automatic mode the target is the user's, and time and gain are read from
/// the camera once a second; in manual mode the other way round. A new camera starts automatic.
class PanelCamExposure final : public PanelCamCtrl
{
    Q_OBJECT

public:
    explicit PanelCamExposure(QWidget* parent);
    ~PanelCamExposure() override;

public slots:
    void updateControls() override;

private slots:
    void autoUpdate();
    void on_checkBoxAuto_toggled(bool checked);
    void on_sliderTarget_valueChanged(int value);
    void on_sliderTime_valueChanged(int value);
    void on_sliderGain_valueChanged(int value);

private:
    void showTime();
    void showGain();

    std::unique_ptr<Ui::PanelCamExposure> ui;
    QTimer* timer = nullptr;
};
