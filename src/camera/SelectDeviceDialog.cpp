#include "camera/SelectDeviceDialog.h"

#include "app/Keys.h"
#include "camera/DeviceNotifications.h"
#include "ui_SelectDeviceDialog.h"

#include <zolens/CWFactory.h>

#include <QDebug>
#include <QHostAddress>
#include <QSettings>
#include <QUrl>

#include <utility>

namespace {

constexpr int wifiTab = 1;
constexpr int scanInterval = 1000;

bool isIPv4(const QString& address)
{
    return QHostAddress(address).protocol() == QAbstractSocket::IPv4Protocol;
}

/// Selects nothing, and tells of no selection, where the first one cannot be selected.
void makeFirstCurrent(QListWidget* list)
{
    if (list->count() == 0)
        return;
    const bool selectable = list->item(0)->flags().testFlag(Qt::ItemIsSelectable);
    list->setCurrentRow(0, selectable ? QItemSelectionModel::ClearAndSelect
                                      : QItemSelectionModel::NoUpdate);
}

/// A selection would replace what somebody types into the field, or is about to.
bool isTypedInto(const QLineEdit* field)
{
    return field->hasFocus() || field->isModified();
}

} // namespace

SelectDeviceDialog::SelectDeviceDialog(const QList<QPair<int, int>>& openedDevices, QWidget* parent)
    : QDialog(parent),
      ui(std::make_unique<Ui::SelectDeviceDialog>()),
      opened(openedDevices)
{
    ui->setupUi(this);
    ui->lineEditRtspUrl->setText(QSettings().value(Keys::rtspUrl()).toString());
    scanTimer.setObjectName(QStringLiteral("scanTimer"));
    ui->tabWidget->setCurrentIndex(0);
    registerForNotifications();
    refreshUSBDevices();
    connect(&scanTimer, &QTimer::timeout, this, &SelectDeviceDialog::refreshTarnlinkDevices);
}

SelectDeviceDialog::~SelectDeviceDialog()
{
    CWFactory::stopTarnlinkDeviceScan();
    notifications.reset();
}

void SelectDeviceDialog::askForOpenedDevices(std::function<QList<QPair<int, int>>()> ask)
{
    openedNow = std::move(ask);
}

bool SelectDeviceDialog::nativeEvent(const QByteArray& eventType, void* message, long* result)
{
    if (notifications)
        notifications->hearMessage(message);
    return QDialog::nativeEvent(eventType, message, result);
}

void SelectDeviceDialog::refreshUSBDevices()
{
    const std::vector<_tag_VideoDeviceInfo> devices = CWFactory::videoDeviceList();
    if (openedNow)
        opened = openedNow();
    qDebug().noquote() << QStringLiteral("%1 devices found.").arg(devices.size());
    ui->listWidget->clear();
    for (const _tag_VideoDeviceInfo& device : devices) {
        QListWidgetItem* item = addItem(ui->listWidget, device);
        item->setData(Qt::UserRole, QStringLiteral("%1#%2").arg(device.type).arg(device.index));
    }
    makeFirstCurrent(ui->listWidget);
}

void SelectDeviceDialog::refreshTarnlinkDevices()
{
    const std::vector<_tag_VideoDeviceInfo> devices = CWFactory::tarnlinkDeviceList();
    qDebug().noquote() << QStringLiteral("%1 tarnlink devices found.").arg(devices.size());
    ui->listWidgetTarnlink->clear();
    for (const _tag_VideoDeviceInfo& device : devices) {
        QListWidgetItem* item = addItem(ui->listWidgetTarnlink, device);
        const QString address = QString::fromStdString(device.address);
        item->setData(Qt::UserRole, address);
        item->setText(item->text() + QLatin1Char(' ') + address);
    }
    if (isTypedInto(ui->lineEditTarnlinkAddress))
        ui->listWidgetTarnlink->setCurrentRow(0, QItemSelectionModel::NoUpdate);
    else
        makeFirstCurrent(ui->listWidgetTarnlink);
}

bool SelectDeviceDialog::isOpened(int type, int index)
{
    return opened.contains({type, index});
}

void SelectDeviceDialog::on_tabWidget_currentChanged(int index)
{
    if (index == wifiTab) {
        CWFactory::startTarnlinkDeviceScan(1);
        scanTimer.start(scanInterval);
    } else {
        CWFactory::stopTarnlinkDeviceScan();
        scanTimer.stop();
    }
}

void SelectDeviceDialog::on_pushButtonRefresh_clicked()
{
    refreshUSBDevices();
}

void SelectDeviceDialog::on_listWidget_itemSelectionChanged()
{
    ui->pushButtonOpenCamera->setEnabled(!ui->listWidget->selectedItems().isEmpty());
}

void SelectDeviceDialog::on_listWidget_itemDoubleClicked(QListWidgetItem* item)
{
    openItem(item);
    accept();
}

void SelectDeviceDialog::on_pushButtonOpenCamera_clicked()
{
    const QList<QListWidgetItem*> chosen = ui->listWidget->selectedItems();
    for (const QListWidgetItem* item : chosen)
        openItem(item);
    accept();
}

void SelectDeviceDialog::on_listWidgetTarnlink_itemSelectionChanged()
{
    const QList<QListWidgetItem*> chosen = ui->listWidgetTarnlink->selectedItems();
    if (!chosen.isEmpty())
        ui->lineEditTarnlinkAddress->setText(chosen.first()->data(Qt::UserRole).toString());
}

void SelectDeviceDialog::on_listWidgetTarnlink_itemDoubleClicked(QListWidgetItem* item)
{
    if (connectToAddress(item->data(Qt::UserRole).toString()))
        accept();
}

// NOLINTNEXTLINE(performance-unnecessary-value-param): the slot takes its text by value
void SelectDeviceDialog::on_lineEditTarnlinkAddress_textChanged(QString arg1)
{
    ui->pushButtonTarnlinkConnect->setEnabled(isIPv4(arg1));
}

void SelectDeviceDialog::on_pushButtonTarnlinkConnect_clicked()
{
    if (connectToAddress(ui->lineEditTarnlinkAddress->text()))
        accept();
}

void SelectDeviceDialog::on_pushButtonRTSPConnect_clicked()
{
    const QString text = ui->lineEditRtspUrl->text();
    if (!QUrl(text, QUrl::TolerantMode).isValid())
        return;
    emit openNetworkDevice(CWDevice_NetworkStream, text);
    QSettings().setValue(Keys::rtspUrl(), text);
    accept();
}

void SelectDeviceDialog::registerForNotifications()
{
    notifications = DeviceNotifications::registerFor(this);
    if (notifications)
        connect(notifications.get(), &DeviceNotifications::devicesChanged, this,
                &SelectDeviceDialog::refreshUSBDevices);
    else
        qDebug("Failed to register device notification");
}

/// An open device is shown greyed and cannot be chosen.
QListWidgetItem* SelectDeviceDialog::addItem(QListWidget* list, const _tag_VideoDeviceInfo& device)
{
    const QString name = QString::fromStdString(device.name);
    auto* item = new QListWidgetItem(name);
    if (isOpened(device.type, device.index))
        item->setFlags(item->flags() & ~(Qt::ItemIsSelectable | Qt::ItemIsEnabled));
    qDebug().noquote() << list->count() << ":" << name;
    list->addItem(item);
    return item;
}

bool SelectDeviceDialog::openItem(const QListWidgetItem* item)
{
    if (!item)
        return false;
    const QStringList parts =
        item->data(Qt::UserRole).toString().split(QLatin1Char('#'), Qt::KeepEmptyParts);
    emit openUsbDevice(parts.value(0).toInt(), parts.value(1).toInt());
    return true;
}

bool SelectDeviceDialog::connectToAddress(const QString& address)
{
    if (!isIPv4(address))
        return false;
    emit openNetworkDevice(CWDevice_NetworkBox, address);
    return true;
}
