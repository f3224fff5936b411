#include "camera/panels/PanelCamVideoSource.h"

#include "ui_PanelCamVideoSource.h"

#include <zolens/MyCamera.h>

#include <QEvent>
#include <QIcon>

namespace {

constexpr int cameraIconSize = 16;
constexpr int pauseIconSize = 24;

QPixmap themePixmap(const char* name, int size)
{
    return QIcon::fromTheme(QLatin1String(name)).pixmap(size);
}

} // namespace

PanelCamVideoSource::PanelCamVideoSource(QWidget* parent)
    : PanelCamCtrl(parent),
      ui(std::make_unique<Ui::PanelCamVideoSource>())
{
    ui->setupUi(this);
    finishForm();
    setIcons();
    ui->labelVideoSourceName->installEventFilter(this);
    connect(ui->labelVideoSourceName, &ZoLinkLabel::clicked, this,
            &PanelCamVideoSource::nameClicked);
    updateControls();
}

PanelCamVideoSource::~PanelCamVideoSource() = default;

void PanelCamVideoSource::updateControls()
{
    if (camera) {
        const QString device = QString::fromStdString(camera->deviceInfo().name);
        showName(device, device);
        ui->toolButtonPause->setChecked(false);
    } else {
        showName(tr("Open Video Source..."), QString());
    }
    setButtonVisible(camera);
    if (isVisible()) {
        layout()->activate();
        fitName();
    }
}

void PanelCamVideoSource::pause(bool) {}

void PanelCamVideoSource::setButtonVisible(bool visible)
{
    ui->toolButtonPause->setVisible(visible);
    ui->toolButtonClose->setVisible(visible);
}

bool PanelCamVideoSource::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == ui->labelVideoSourceName && event->type() == QEvent::Resize)
        fitName();
    return PanelCamCtrl::eventFilter(watched, event);
}

void PanelCamVideoSource::on_toolButtonClose_clicked()
{
    emit closeCamera();
}

void PanelCamVideoSource::on_toolButtonPause_clicked(bool checked)
{
    emit pauseCamera(checked);
}

void PanelCamVideoSource::setIcons()
{
    ui->labelIcon->setPixmap(themePixmap("cww-camera", cameraIconSize));
    QIcon pauseIcon;
    pauseIcon.addPixmap(themePixmap("cww-pause-on", pauseIconSize), QIcon::Normal, QIcon::On);
    pauseIcon.addPixmap(themePixmap("cww-pause", pauseIconSize), QIcon::Normal, QIcon::Off);
    ui->toolButtonPause->setIcon(pauseIcon);
    ui->toolButtonClose->setIcon(QIcon::fromTheme(QStringLiteral("cww-close")));
}

void PanelCamVideoSource::showName(const QString& text, const QString& toolTip)
{
    name = text;
    ui->labelVideoSourceName->setText(name);
    ui->labelVideoSourceName->setToolTip(toolTip);
    ui->labelVideoSourceName->setAccessibleName(name);
}

void PanelCamVideoSource::fitName()
{
    ZoLinkLabel* label = ui->labelVideoSourceName;
    label->setText(label->fontMetrics().elidedText(name, Qt::ElideRight, label->width()));
}
