#pragma once

#include "camera/panels/PanelCamCtrl.h"

#include <memory>
#include <vector>

namespace Ui {
class PanelCamMiscellaneous;
}

/// The frequency of the mains, whose flicker of lamps the camera is to suppress.
class PanelCamMiscellaneous final : public PanelCamCtrl
{
    Q_OBJECT

public:
    explicit PanelCamMiscellaneous(QWidget* parent);
    ~PanelCamMiscellaneous() override;

public slots:
    void updateControls() override;

private slots:
    void on_comboBoxPowerFrequency_currentIndexChanged(int index);

private:
    /// Without signals; the first one is then selected.
    void replaceItems(const std::vector<int>& frequencies);

    std::unique_ptr<Ui::PanelCamMiscellaneous> ui;
};
