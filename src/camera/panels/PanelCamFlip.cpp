#include "camera/panels/PanelCamFlip.h"

#include "ui_PanelCamFlip.h"

#include <zolens/CWCamera.h>

PanelCamFlip::PanelCamFlip(QWidget* parent)
    : PanelCamCtrl(parent),
      ui(std::make_unique<Ui::PanelCamFlip>())
{
    ui->setupUi(this);
    finishForm();
}

PanelCamFlip::~PanelCamFlip() = default;

void PanelCamFlip::updateControls()
{
    if (!device())
        return;
    setEnabled(true);
    ui->pushButtonMirror->setChecked(device()->mirror());
    ui->pushButtonFlip->setChecked(device()->flip());
}

void PanelCamFlip::on_pushButtonMirror_clicked(bool checked)
{
    if (device())
        device()->setMirror(checked);
}

void PanelCamFlip::on_pushButtonFlip_clicked(bool checked)
{
    if (device())
        device()->setFlip(checked);
}
