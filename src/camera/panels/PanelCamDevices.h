#pragma once

#include "camera/panels/PanelCamCtrl.h"

#include <QSize>

#include <memory>
#include <vector>

namespace Ui {
class PanelCamDevices;
}

/// Format and sizes of the open device, and whether pictures are taken by its own still capture.
/// The format decides the preview sizes, and those, without still capture, the picture size.
class PanelCamDevices final : public PanelCamCtrl
{
    Q_OBJECT

public:
    explicit PanelCamDevices(QWidget* parent);
    ~PanelCamDevices() override;

    /// Shows what the device has chosen by itself, and writes nothing.
    void showModes();

public slots:
    void updateControls() override;

private slots:
    void on_comboBoxPreviewSize_currentIndexChanged(int index);
    void on_comboBoxPreviewFormat_currentIndexChanged(int index);
    void on_comboBoxPictureSize_currentIndexChanged(int index);
    void on_toolButtonDisableStill_toggled(bool checked);

private:
    void fillFormats();
    void fillPreviewSizes();
    void fillPictureSizes();
    std::vector<QSize> previewSizes() const;
    std::vector<QSize> stillSizes() const;
    QSize previewSize() const;

    std::unique_ptr<Ui::PanelCamDevices> ui;
};
