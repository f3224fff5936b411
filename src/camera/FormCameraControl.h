#pragma once

#include <QVector>
#include <QWidget>

class MyCamera;
class PanelCamCapture;
class PanelCamColorAdjustment;
class PanelCamCtrl;
class PanelCamDevices;
class PanelCamExposure;
class PanelCamFlip;
class PanelCamMiscellaneous;
class PanelCamVideoSource;
class PanelCamWhiteBalance;
class ZoCategoryToolBox;

/// The camera page of the side bar: a stack of panels that show and set what the open camera
/// offers.
class FormCameraControl final : public QWidget
{
    Q_OBJECT

public:
    FormCameraControl(bool withVideoSource, bool withCapture, QWidget* parent);

    QSize sizeHint() const override { return {220, 0}; }

public slots:
    /// Hands the camera to every panel; it must stay open until onCameraClosed().
    void onCameraOpened(MyCamera* camera);
    /// All panels but the video source keep what they show.
    void onCameraClosed();

signals:
    void openSelectDeviceDialog();
    void closeCamera();
    void pauseCamera(bool enable);

private:
    void addVideoSource();
    void addCategories(bool withCapture);
    void addCategory(const QString& title, PanelCamCtrl* panel, bool open);
    void setCamera(MyCamera* camera);

    PanelCamVideoSource* videoSource = nullptr; ///< Null when the page is made without it.
    PanelCamCapture* capture = nullptr;         ///< Null when the page is made without it.
    PanelCamDevices* devices = nullptr;
    PanelCamExposure* exposure = nullptr;
    PanelCamWhiteBalance* whiteBalance = nullptr;
    PanelCamColorAdjustment* colorAdjustment = nullptr;
    PanelCamFlip* flip = nullptr;
    PanelCamMiscellaneous* miscellaneous = nullptr;
    QVector<PanelCamCtrl*> panels;
    ZoCategoryToolBox* toolBox = nullptr;
};
