#include "FakeBox.h"
#include "gige/UsbVision.h"
#include "support/TimeLimits.h"

#include <zolens/CWFactory.h>
#include <zolens/MyCamera.h>

#include <QElapsedTimer>
#include <QFile>
#include <QtTest>

#include <algorithm>

namespace {

CWUVCFilter filterOf(std::initializer_list<CWUVCFilterItem> rows)
{
    CWUVCFilter filter;
    for (const CWUVCFilterItem& row : rows)
        filter.addItem(row);
    return filter;
}

/// Datagrams that left this network's machine for anywhere, since it is there.
qint64 sentDatagrams()
{
    QFile file(QStringLiteral("/proc/self/net/snmp"));
    if (!file.open(QIODevice::ReadOnly))
        return -1;
    const QList<QByteArray> lines = file.readAll().split('\n');
    QList<QByteArrayList> udp;
    for (const QByteArray& line : lines) {
        if (line.startsWith("Udp:"))
            udp << line.simplified().split(' ');
    }
    return udp.size() == 2 ? udp[1].value(udp[0].indexOf("OutDatagrams")).toLongLong() : -1;
}

} // namespace

/// There is no camera of this class on a machine of tests: that none is found, and how.
class tst_UsbVision final : public QObject
{
    Q_OBJECT

private slots:
    void looksForCamerasWithoutTheNetwork()
    {
        FakeBox box;
        QVERIFY(box.start());
        const qint64 before = sentDatagrams();
        QVERIFY(before > 0);
        QVERIFY(zolens::usbVisionDevices(filterOf({{0, 0, {}, CWDevice_Usb3Vision}})).empty());
        const auto devices = CWFactory::videoDeviceList();
        QCOMPARE(sentDatagrams(), before);
        QVERIFY(std::none_of(devices.begin(), devices.end(), [](const auto& device) {
            return device.type == CWDevice_Usb3Vision || device.type == CWDevice_NetworkBox;
        }));
    }

    void aBoxOpensAfterTheUsbWasSearched()
    {
        FakeBox box;
        QVERIFY(box.start());
        CWFactory::videoDeviceList();
        MyCamera camera;
        QVERIFY(camera.open(CWDevice_NetworkBox, box.address()));
    }

    void listsQuickly()
    {
        CWFactory::videoDeviceList();
        QElapsedTimer timer;
        timer.start();
        // Waiting for answers from a network takes a second each time.
        for (int i = 0; i < 5; ++i)
            CWFactory::videoDeviceList();
        QVERIFY2(timer.elapsed() < timelimits::deviceCall,
                 qPrintable(QString::number(timer.elapsed())));
    }

    void doesNotOpenACameraThatNobodySaw()
    {
        MyCamera camera;
        QVERIFY(!camera.open(CWDevice_Usb3Vision, 0, true));
        QVERIFY(!camera.open(CWDevice_Usb3Vision, -1, true));
    }
};

QTEST_GUILESS_MAIN(tst_UsbVision)
#include "tst_UsbVision.moc"
