#include "camera/FormCameraControl.h"

#include "camera/panels/PanelCamVideoSource.h"

#include <QVBoxLayout>

FormCameraControl::FormCameraControl(bool withVideoSource, QWidget* parent) : QWidget(parent)
{
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    if (withVideoSource)
        addVideoSource();
    layout->addStretch(1);
}

void FormCameraControl::onCameraOpened(MyCamera* camera)
{
    if (!camera)
        return;
    setCamera(camera);
    for (PanelCamCtrl* panel : qAsConst(panels))
        panel->updateControls();
}

void FormCameraControl::onCameraClosed()
{
    setCamera(nullptr);
    if (videoSource)
        videoSource->updateControls();
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

void FormCameraControl::setCamera(MyCamera* camera)
{
    for (PanelCamCtrl* panel : qAsConst(panels))
        panel->setCamera(camera);
}
