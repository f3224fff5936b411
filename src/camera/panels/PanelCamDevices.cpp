#include "camera/panels/PanelCamDevices.h"

#include "app/Keys.h"
#include "camera/Texts.h"
#include "ui_PanelCamDevices.h"

#include <zolens/CWCamera.h>

#include <QComboBox>
#include <QIcon>
#include <QSettings>
#include <QSignalBlocker>

#include <algorithm>

namespace {

constexpr int lockIconSize = 24;

QString sizeText(const QSize& size)
{
    return QStringLiteral("%1 x %2").arg(size.width()).arg(size.height());
}

QStringList sizeTexts(const std::vector<QSize>& sizes)
{
    QStringList texts;
    for (const QSize& size : sizes)
        texts << sizeText(size);
    return texts;
}

template <class T>
bool isPosition(int index, const std::vector<T>& list)
{
    return index >= 0 && static_cast<std::size_t>(index) < list.size();
}

/// -1 when the list lacks it.
template <class T>
int positionOf(const T& wanted, const std::vector<T>& list)
{
    const auto found = std::find(list.begin(), list.end(), wanted);
    return found == list.end() ? -1 : static_cast<int>(found - list.begin());
}

/// Without signals.
void replaceItems(QComboBox* combo, const QStringList& texts)
{
    const QSignalBlocker blocker(combo);
    combo->clear();
    combo->addItems(texts);
}

/// Selects the position by way of none, so that it is told, and thereby written to the camera, also
/// when it is the one that was selected before.
void selectAnew(QComboBox* combo, int position)
{
    combo->setCurrentIndex(-1);
    combo->setCurrentIndex(position);
}

} // namespace

PanelCamDevices::PanelCamDevices(QWidget* parent)
    : PanelCamCtrl(parent),
      ui(std::make_unique<Ui::PanelCamDevices>())
{
    ui->setupUi(this);
    finishForm();
    const QSize size(lockIconSize, lockIconSize);
    const QIcon on = QIcon::fromTheme(QStringLiteral("cww-lock-on"));
    const QIcon off = QIcon::fromTheme(QStringLiteral("cww-lock"));
    QIcon lock;
    lock.addPixmap(on.pixmap(size), QIcon::Normal, QIcon::On);
    lock.addPixmap(off.pixmap(size), QIcon::Normal, QIcon::Off);
    ui->toolButtonDisableStill->setIcon(lock);
}

PanelCamDevices::~PanelCamDevices() = default;

// The button takes another default than the picture sizes: with nothing stored, a device with still
// capture starts with it disabled, and checking the button stores that.
void PanelCamDevices::updateControls()
{
    if (!device())
        return;
    setEnabled(true);
    fillFormats();
    const bool hasStill = device()->hasStillCapture();
    ui->toolButtonDisableStill->setVisible(hasStill);
    if (hasStill)
        ui->toolButtonDisableStill->setChecked(
            QSettings().value(Keys::disableStill(), true).toBool());
}

void PanelCamDevices::showModes()
{
    if (!device())
        return;
    const QSignalBlocker formats(ui->comboBoxPreviewFormat);
    const QSignalBlocker sizes(ui->comboBoxPreviewSize);
    const QSignalBlocker pictures(ui->comboBoxPictureSize);
    fillFormats();
    fillPreviewSizes();
    fillPictureSizes();
    ui->toolButtonDisableStill->setVisible(device()->hasStillCapture());
}

void PanelCamDevices::on_comboBoxPreviewSize_currentIndexChanged(int index)
{
    if (!device() || !isPosition(index, previewSizes()))
        return;
    device()->setPreviewSize(index);
    if (!device()->hasStillCapture())
        fillPictureSizes();
}

void PanelCamDevices::on_comboBoxPreviewFormat_currentIndexChanged(int index)
{
    if (!device())
        return;
    std::vector<int> formats;
    device()->previewFormats(&formats);
    if (!isPosition(index, formats))
        return;
    device()->setPreviewFormat(index);
    fillPreviewSizes();
    fillPictureSizes();
}

void PanelCamDevices::on_comboBoxPictureSize_currentIndexChanged(int index)
{
    if (device() && isPosition(index, stillSizes()))
        device()->setStillCaptureSize(index);
}

void PanelCamDevices::on_toolButtonDisableStill_toggled(bool checked)
{
    QSettings().setValue(Keys::disableStill(), checked);
    if (device())
        fillPictureSizes();
}

void PanelCamDevices::fillFormats()
{
    std::vector<int> formats;
    device()->previewFormats(&formats);
    QStringList texts;
    for (const int format : formats)
        texts << Texts::videoFormatText(format);
    replaceItems(ui->comboBoxPreviewFormat, texts);
    selectAnew(ui->comboBoxPreviewFormat, positionOf(device()->previewFormat(), formats));
}

void PanelCamDevices::fillPreviewSizes()
{
    const std::vector<QSize> sizes = previewSizes();
    const int position = positionOf(previewSize(), sizes);
    replaceItems(ui->comboBoxPreviewSize, sizeTexts(sizes));
    selectAnew(ui->comboBoxPreviewSize, position);
}

void PanelCamDevices::fillPictureSizes()
{
    const bool disabled = QSettings().value(Keys::disableStill(), false).toBool();
    const bool choice = device()->hasStillCapture() && !disabled;
    if (choice) {
        const std::vector<QSize> sizes = stillSizes();
        QSize current;
        device()->stillSize(&current);
        replaceItems(ui->comboBoxPictureSize, sizeTexts(sizes));
        selectAnew(ui->comboBoxPictureSize, positionOf(current, sizes));
    } else {
        replaceItems(ui->comboBoxPictureSize, {sizeText(previewSize())});
    }
    ui->comboBoxPictureSize->setEnabled(choice);
}

std::vector<QSize> PanelCamDevices::previewSizes() const
{
    std::vector<QSize> sizes;
    device()->previewSizes(&sizes);
    return sizes;
}

std::vector<QSize> PanelCamDevices::stillSizes() const
{
    std::vector<QSize> sizes;
    device()->stillSizes(&sizes);
    return sizes;
}

QSize PanelCamDevices::previewSize() const
{
    QSize size;
    device()->previewSize(&size);
    return size;
}
