#include "camera/FormCameraControl.h"

#include "camera/panels/PanelCamCapture.h"
#include "camera/panels/PanelCamColorAdjustment.h"
#include "camera/panels/PanelCamDevices.h"
#include "camera/panels/PanelCamExposure.h"
#include "camera/panels/PanelCamFlip.h"
#include "camera/panels/PanelCamMiscellaneous.h"
#include "camera/panels/PanelCamVideoSource.h"
#include "camera/panels/PanelCamWhiteBalance.h"

#include <zolens/MyCamera.h>
#include <zowidgets/ZoCategoryToolBox.h>

#include <QVBoxLayout>

FormCameraControl::FormCameraControl(bool withVideoSource, bool withCapture, QWidget* parent)
    : QWidget(parent)
{
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    if (withVideoSource)
        addVideoSource();
    toolBox = new ZoCategoryToolBox(this);
    addCategories(withCapture);
    toolBox->setEnabled(false);
    layout->addWidget(toolBox, 1);
}

void FormCameraControl::onCameraOpened(MyCamera* camera)
{
    if (!camera)
        return;
    setCamera(camera);
    connect(camera, &MyCamera::modesChanged, devices, &PanelCamDevices::showModes,
            Qt::UniqueConnection);
    for (PanelCamCtrl* panel : qAsConst(panels))
        panel->updateControls();
    toolBox->relayout();
    toolBox->setEnabled(true);
}

void FormCameraControl::onCameraClosed()
{
    setCamera(nullptr);
    if (videoSource)
        videoSource->updateControls();
    toolBox->setEnabled(false);
}

void FormCameraControl::addVideoSource()
{
    videoSource = new PanelCamVideoSource(this);
    connect(videoSource, &PanelCamVideoSource::nameClicked, this,
            &FormCameraControl::openSelectDeviceDialog);
    connect(videoSource, &PanelCamVideoSource::closeCamera, this, &FormCameraControl::closeCamera);
    connect(videoSource, &PanelCamVideoSource::pauseCamera, this, &FormCameraControl::pauseCamera);
    panels << videoSource;
    layout()->addWidget(videoSource);
}

void FormCameraControl::addCategories(bool withCapture)
{
    if (withCapture)
        addCategory(tr("Capture"), capture = new PanelCamCapture(this), true);
    addCategory(tr("Image Source"), devices = new PanelCamDevices(this), true);
    addCategory(tr("Exposure && Gain"), exposure = new PanelCamExposure(this), false);
    addCategory(tr("White Balance"), whiteBalance = new PanelCamWhiteBalance(this), false);
    addCategory(tr("Color Adjustment"), colorAdjustment = new PanelCamColorAdjustment(this), false);
    addCategory(tr("Flip"), flip = new PanelCamFlip(this), false);
    addCategory(tr("Miscellaneous"), miscellaneous = new PanelCamMiscellaneous(this), false);
}

void FormCameraControl::addCategory(const QString& title, PanelCamCtrl* panel, bool open)
{
    toolBox->addCategory(title, panel, open);
    panels << panel;
}

void FormCameraControl::setCamera(MyCamera* camera)
{
    for (PanelCamCtrl* panel : qAsConst(panels))
        panel->setCamera(camera);
}
