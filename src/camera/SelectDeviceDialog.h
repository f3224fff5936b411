#pragma once

#include <QDialog>
#include <QList>
#include <QPair>
#include <QTimer>

#include <functional>
#include <memory>

class DeviceNotifications;
class QListWidget;
class QListWidgetItem;
struct _tag_VideoDeviceInfo; // NOLINT(bugprone-reserved-identifier): the library's own name

namespace Ui {
class SelectDeviceDialog;
}

/// The modal choice of a video source: a USB camera, a network box or a network stream. Opens
/// nothing itself: it tells the class and the identity of the chosen device. Lists the cameras anew
/// when one is plugged in or out, and looks for network boxes while their tab shows.
class SelectDeviceDialog final : public QDialog
{
    Q_OBJECT

public:
    /// `openedDevices` holds type and index of the devices that are open already.
    SelectDeviceDialog(const QList<QPair<int, int>>& openedDevices, QWidget* parent);
    ~SelectDeviceDialog() override;

    /// From now on the open devices are asked for before every list of cameras: while the dialog is
    /// up, one that is open may go, and another may get its number.
    void askForOpenedDevices(std::function<QList<QPair<int, int>>()> ask);

signals:
    void openUsbDevice(int type, int index);
    void openNetworkDevice(int type, QString url);

protected:
    bool nativeEvent(const QByteArray& eventType, void* message, long* result) override;

protected slots:
    void refreshUSBDevices();
    void refreshTarnlinkDevices();

private slots:
    bool isOpened(int type, int index);
    void on_tabWidget_currentChanged(int index);
    void on_pushButtonRefresh_clicked();
    void on_listWidget_itemSelectionChanged();
    void on_listWidget_itemDoubleClicked(QListWidgetItem* item);
    void on_pushButtonOpenCamera_clicked();
    void on_listWidgetTarnlink_itemSelectionChanged();
    void on_listWidgetTarnlink_itemDoubleClicked(QListWidgetItem* item);
    void on_lineEditTarnlinkAddress_textChanged(QString arg1);
    void on_pushButtonTarnlinkConnect_clicked();
    void on_pushButtonRTSPConnect_clicked();

private:
    void registerForNotifications();
    QListWidgetItem* addItem(QListWidget* list, const _tag_VideoDeviceInfo& device);
    bool openItem(const QListWidgetItem* item);
    bool connectToAddress(const QString& address);

    std::unique_ptr<Ui::SelectDeviceDialog> ui;
    QList<QPair<int, int>> opened;
    std::function<QList<QPair<int, int>>()> openedNow; ///< Null where they stay the same.
    QTimer scanTimer{this};
    std::unique_ptr<DeviceNotifications> notifications; ///< Null when the system refused them.
};
