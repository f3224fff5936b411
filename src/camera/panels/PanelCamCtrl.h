#pragma once

#include <QWidget>

class MyCamera;

/// The base of the panels of the camera page: knows the open camera and fills its controls from it.
class PanelCamCtrl : public QWidget
{
    Q_OBJECT

public:
    using QWidget::QWidget;

    /// Null when no camera is open. Not owned. The controls follow with updateControls().
    void setCamera(MyCamera* openCamera) { camera = openCamera; }

public slots:
    /// Fills the controls anew from the camera.
    virtual void updateControls() = 0;

protected:
    MyCamera* camera = nullptr;
};
