#pragma once

#include <zolens/CameraTypes.h>

#include <QWidget>

#include <optional>

class CWCamera;
class MyCamera;
class QAbstractButton;
class QComboBox;
class QGroupBox;
class QLabel;
class QSlider;
class QSpinBox;

/// The base of the panels of the camera page: knows the open camera and fills its controls from it.
/// The filling routines leave the signals of the controls connected, so that what they show is
/// written to the camera too; without an open device they do nothing.
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
    /// Keeps Return in a spin box, where it commits the number, from being a shortcut too.
    bool eventFilter(QObject* watched, QEvent* event) override;

    /// Gives the form the looks and the keys that all panels share. Call it after the form is set
    /// up.
    void finishForm();

    /// Checks the button so that it is told also when it was checked for the last camera.
    static void checkAnew(QAbstractButton* button);

    /// Null when no device is open.
    CWCamera* device() const;
    /// False, and `value` is left as it is, when the device does not tell.
    bool readProperty(tagCMProperty id, int* value) const;
    void writeProperty(tagCMProperty id, int value);
    /// Brings the slider in line with the property without a signal, so that nothing is written
    /// back. A property that the device does not tell leaves it alone.
    void showPolled(tagCMProperty id, QSlider* slider);
    /// Sets the property of the open device to its default, and gives that; nothing when the device
    /// lacks it, or is gone.
    std::optional<int> resetProperty(tagCMProperty id);
    /// And shows the default by the slider.
    void resetProperty(tagCMProperty id, QSlider* slider);

    /// Lists the values of an enumerated property and selects the first. Only the colour mode has
    /// texts.
    void fillCombo(tagCMProperty id, QGroupBox* group, QComboBox* combo);
    /// `group` may be null. With `formatted` the label shows the value with its unit.
    void fillLabelledSlider(tagCMProperty id, QWidget* group, QSlider* slider, QLabel* label,
                            bool formatted);
    /// `group` may be null.
    void fillSpinBoxSlider(tagCMProperty id, QWidget* group, QSlider* slider, QSpinBox* spinBox);

    MyCamera* camera = nullptr;

private:
    /// Shows the group exactly when the device has the property.
    bool showGroup(tagCMProperty id, QWidget* group);
};
