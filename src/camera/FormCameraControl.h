#pragma once

#include <QVector>
#include <QWidget>

class MyCamera;
class PanelCamCtrl;
class PanelCamVideoSource;

/// The camera page of the side bar: a stack of panels that show and set what the open camera
/// offers.
class FormCameraControl final : public QWidget
{
    Q_OBJECT

public:
    FormCameraControl(bool withVideoSource, QWidget* parent);

    QSize sizeHint() const override { return {220, 0}; }

public slots:
    /// Hands the camera to every panel; it must stay open until onCameraClosed().
    void onCameraOpened(MyCamera* camera);
    void onCameraClosed();

signals:
    void openSelectDeviceDialog();
    void closeCamera();
    void pauseCamera(bool enable);

private:
    void addVideoSource();
    void setCamera(MyCamera* camera);

    PanelCamVideoSource* videoSource = nullptr; ///< Null when the page is made without it.
    QVector<PanelCamCtrl*> panels;
};
