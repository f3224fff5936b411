#include "UdevTestbed.h"

#include "camera/DeviceNotifications.h"

#include <QElapsedTimer>
#include <QWidget>
#include <QtTest>

namespace {

constexpr int settlingTime = 1000;
/// A timer may be early by some parts of a hundred.
constexpr int settlingTimeAtLeast = 900;
constexpr int longEnough = 10000;

} // namespace

class tst_DeviceNotifications : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        testbed.addCamera(0);
        testbed.addCamera(1);
    }

    void init()
    {
        notifications = DeviceNotifications::registerFor(&window);
        QVERIFY(notifications);
        changes =
            std::make_unique<QSignalSpy>(notifications.get(), &DeviceNotifications::devicesChanged);
    }

    void cleanup()
    {
        changes.reset();
        notifications.reset();
    }

    void aRemovalIsToldAtOnce_data() { devices(); }

    void aRemovalIsToldAtOnce()
    {
        QFETCH(QString, device);
        testbed.tell(device.toStdString(), "remove");
        QTRY_COMPARE_WITH_TIMEOUT(changes->count(), 1, settlingTimeAtLeast);
    }

    void anArrivalIsToldAfterASecond_data() { devices(); }

    void anArrivalIsToldAfterASecond()
    {
        QFETCH(QString, device);
        QElapsedTimer time;
        time.start();
        testbed.tell(device.toStdString(), "add");
        QTRY_COMPARE_WITH_TIMEOUT(changes->count(), 1, longEnough);
        QVERIFY2(time.elapsed() >= settlingTimeAtLeast,
                 qPrintable(QString::number(time.elapsed())));
    }

    void theEventsOfOneArrivalAreOneChange()
    {
        for (const std::string& device : {UdevTestbed::usbDevice(0), UdevTestbed::usbInterface(0),
                                          UdevTestbed::videoNode(0), UdevTestbed::videoNode(1)})
            testbed.tell(device, "add");
        QTRY_COMPARE_WITH_TIMEOUT(changes->count(), 1, longEnough);
        QTest::qWait(settlingTime + 200);
        QCOMPARE(changes->count(), 1);
    }

    void theEventsOfOneRemovalAreOneChange()
    {
        for (const std::string& device : {UdevTestbed::videoNode(0), UdevTestbed::videoNode(1),
                                          UdevTestbed::usbInterface(0), UdevTestbed::usbDevice(0)})
            testbed.tell(device, "remove");
        QTRY_COMPARE_WITH_TIMEOUT(changes->count(), 1, settlingTimeAtLeast);
        QTest::qWait(200);
        QCOMPARE(changes->count(), 1);
    }

    void aLateEventOfAnArrivalStartsTheSecondAnew()
    {
        testbed.tell(UdevTestbed::usbDevice(0), "add");
        QTest::qWait(settlingTime / 2);
        QElapsedTimer time;
        time.start();
        testbed.tell(UdevTestbed::videoNode(0), "add");
        QTRY_COMPARE_WITH_TIMEOUT(changes->count(), 1, longEnough);
        QVERIFY2(time.elapsed() >= settlingTimeAtLeast,
                 qPrintable(QString::number(time.elapsed())));
    }

    void aRemovalDuringTheSecondOfAnArrivalIsOneMoreChange()
    {
        testbed.tell(UdevTestbed::videoNode(0), "add");
        testbed.tell(UdevTestbed::videoNode(1), "remove");
        QTRY_COMPARE_WITH_TIMEOUT(changes->count(), 1, settlingTimeAtLeast);
        QTRY_COMPARE_WITH_TIMEOUT(changes->count(), 2, longEnough);
    }

    void otherEventsAreNoChange()
    {
        testbed.tell(UdevTestbed::usbInterface(0), "add");
        testbed.tell(UdevTestbed::usbInterface(0), "remove");
        testbed.tell(UdevTestbed::usbDevice(0), "bind");
        testbed.tell(UdevTestbed::videoNode(0), "change");
        QTest::qWait(settlingTime + 300);
        QCOMPARE(changes->count(), 0);
    }

    void nothingIsToldOnceTheRegistrationIsGone()
    {
        testbed.tell(UdevTestbed::videoNode(0), "add");
        QTest::qWait(100);
        testbed.tell(UdevTestbed::videoNode(0), "remove");
        changes.reset();
        notifications.reset();
        QTest::qWait(settlingTime + 300);
        init();
        testbed.tell(UdevTestbed::videoNode(0), "remove");
        QTRY_COMPARE_WITH_TIMEOUT(changes->count(), 1, settlingTimeAtLeast);
    }

    void allWhoAreRegisteredAreTold()
    {
        const auto second = DeviceNotifications::registerFor(&window);
        QVERIFY(second);
        QSignalSpy others(second.get(), &DeviceNotifications::devicesChanged);
        testbed.tell(UdevTestbed::videoNode(0), "remove");
        QTRY_COMPARE_WITH_TIMEOUT(changes->count(), 1, settlingTimeAtLeast);
        QTRY_COMPARE_WITH_TIMEOUT(others.count(), 1, settlingTimeAtLeast);
    }

private:
    static void devices()
    {
        QTest::addColumn<QString>("device");
        QTest::newRow("video node") << QString::fromStdString(UdevTestbed::videoNode(0));
        QTest::newRow("USB device") << QString::fromStdString(UdevTestbed::usbDevice(0));
    }

    UdevTestbed testbed;
    QWidget window;
    std::unique_ptr<DeviceNotifications> notifications;
    std::unique_ptr<QSignalSpy> changes;
};

QTEST_MAIN(tst_DeviceNotifications)
#include "tst_DeviceNotifications.moc"
