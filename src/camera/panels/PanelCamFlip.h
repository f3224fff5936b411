#pragma once

#include "camera/panels/PanelCamCtrl.h"

#include <memory>

namespace Ui {
class PanelCamFlip;
}

/// Mirrors the picture left to right and turns it upside down.
class PanelCamFlip final : public PanelCamCtrl
{
    Q_OBJECT

public:
    explicit PanelCamFlip(QWidget* parent);
    ~PanelCamFlip() override;

public slots:
    void updateControls() override;

private slots:
    void on_pushButtonMirror_clicked(bool checked);
    void on_pushButtonFlip_clicked(bool checked);

private:
    std::unique_ptr<Ui::PanelCamFlip> ui;
};
