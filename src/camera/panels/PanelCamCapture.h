#pragma once

#include "camera/panels/PanelCamCtrl.h"

#include <memory>

namespace Ui {
class PanelCamCapture;
}

/// Buttons to take pictures and to record.
class PanelCamCapture final : public PanelCamCtrl
{
    Q_OBJECT

public:
    explicit PanelCamCapture(QWidget* parent);
    ~PanelCamCapture() override;

public slots:
    void updateControls() override;

private:
    std::unique_ptr<Ui::PanelCamCapture> ui;
};
