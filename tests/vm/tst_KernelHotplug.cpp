#include "Settings.h"
#include "UsbTest.h"

#include "camera/SelectDeviceDialog.h"

#include <QListWidget>
#include <QtTest>

/// The dialog follows what is plugged in and out, by the events of the kernel and of udev.
class tst_KernelHotplug final : public UsbTest
{
    Q_OBJECT

public:
    tst_KernelHotplug() : UsbTest(UsbBench::small) {}

private slots:
    void listsWhatIsPluggedIn();
    void followsPluggingAndUnplugging();
    void followsASecondCamera();
    void anOpenCameraThatIsPulledOutLeavesTheList();

private:
    /// Waits until the dialog lists so many cameras of the name of the software camera.
    static bool shows(const SelectDeviceDialog& dialog, int count);
};

bool tst_KernelHotplug::shows(const SelectDeviceDialog& dialog, int count)
{
    const auto* list = dialog.findChild<QListWidget*>(QStringLiteral("listWidget"));
    const QString name = QString::fromStdString(UsbBench::name());
    return QTest::qWaitFor([&] { return list->findItems(name, Qt::MatchExactly).size() == count; },
                           vm::patience);
}

void tst_KernelHotplug::listsWhatIsPluggedIn()
{
    SelectDeviceDialog dialog({}, nullptr);
    QVERIFY(shows(dialog, 1));
}

void tst_KernelHotplug::followsPluggingAndUnplugging()
{
    SelectDeviceDialog dialog({}, nullptr);
    dialog.show();
    for (int i = 0; i < 3; ++i) {
        QVERIFY(bench->usb.unplug());
        QVERIFY(shows(dialog, 0));
        QVERIFY(bench->usb.plug());
        QVERIFY(shows(dialog, 1));
    }
}

void tst_KernelHotplug::followsASecondCamera()
{
    SelectDeviceDialog dialog({}, nullptr);
    dialog.show();
    {
        const UsbCamera second(1);
        QVERIFY(second.isPlugged());
        QVERIFY(shows(dialog, 2));
    }
    QVERIFY(shows(dialog, 1));
}

void tst_KernelHotplug::anOpenCameraThatIsPulledOutLeavesTheList()
{
    const auto viewer = bench->opened();
    QVERIFY(viewer && viewer->sees(1, UsbBench::small));
    const _tag_VideoDeviceInfo& info = viewer->camera.deviceInfo();
    SelectDeviceDialog dialog({{info.type, info.index}}, nullptr);
    dialog.show();
    QVERIFY(shows(dialog, 1));
    QVERIFY(bench->usb.unplug());
    QVERIFY(shows(dialog, 0));
    viewer->camera.close();
    QVERIFY(bench->usb.plug());
    QVERIFY(shows(dialog, 1));
}

QTEST_MAIN(tst_KernelHotplug)
#include "tst_KernelHotplug.moc"
