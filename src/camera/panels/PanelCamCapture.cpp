#include "camera/panels/PanelCamCapture.h"

#include "ui_PanelCamCapture.h"

#include <QIcon>

PanelCamCapture::PanelCamCapture(QWidget* parent)
    : PanelCamCtrl(parent),
      ui(std::make_unique<Ui::PanelCamCapture>())
{
    ui->setupUi(this);
    finishForm();
    ui->toolButtonSnap->setIcon(QIcon::fromTheme(QStringLiteral("actions/snap")));
    ui->toolButtonStartRecord->setIcon(QIcon::fromTheme(QStringLiteral("actions/media-record")));
    ui->toolButtonPauseRecord->setIcon(
        QIcon::fromTheme(QStringLiteral("actions/media-playback-pause")));
    ui->toolButtonStopRecord->setIcon(
        QIcon::fromTheme(QStringLiteral("actions/media-playback-stop")));
}

PanelCamCapture::~PanelCamCapture() = default;

void PanelCamCapture::updateControls()
{
    setEnabled(true);
}
