#include "Settings.h"
#include "UsbTest.h"

#include <QElapsedTimer>
#include <QtTest>

/// What becomes of a USB camera that is pulled out, stalls or answers badly, through the kernel's
/// driver.
class tst_KernelUsbFailures final : public UsbTest
{
    Q_OBJECT

public:
    tst_KernelUsbFailures() : UsbTest(UsbBench::small) {}

private slots:
    void unpluggingEndsThePictures();
    void opensAgainWhenPluggedInAgain();
    void isNotListedWhileUnplugged();
    void aCameraInUseDoesNotOpen();
    void skipsDamagedPictures_data();
    void skipsDamagedPictures();
    void restartsAStalledStream();
    void triesUntilAStalledCameraComesBack();
    void aCameraWithoutAnswersHoldsNobodyUp();
    void closesInTimeWhileTheCameraDoesNotAnswer();
};

void tst_KernelUsbFailures::unpluggingEndsThePictures()
{
    const auto viewer = bench->opened();
    QVERIFY(viewer && viewer->sees(5, UsbBench::small));
    const quint64 restarts = viewer->restarts();
    QVERIFY(bench->usb.unplug());
    CWCamera& camera = viewer->device();
    double value = 0;
    QTRY_VERIFY_WITH_TIMEOUT(camera.getProperty(CMProperty_Brightness, &value) != 0, vm::patience);
    QVERIFY(viewer->camera.snap().isNull());
    QVERIFY(camera.setProperty(CMProperty_Brightness, 1) != 0);
    QCOMPARE(camera.setPreviewSize(0), 0);
    QTRY_COMPARE_WITH_TIMEOUT(viewer->camera.frameRate(), 0.0F, vm::patience);
    const int count = viewer->count();
    QTest::qWait(500);
    QCOMPARE(viewer->count(), count);
    QCOMPARE(viewer->restarts(), restarts);
    QElapsedTimer timer;
    timer.start();
    viewer->camera.close();
    QVERIFY2(timer.elapsed() < 2000, qPrintable(QString::number(timer.elapsed())));
    QVERIFY(bench->usb.plug());
}

void tst_KernelUsbFailures::opensAgainWhenPluggedInAgain()
{
    auto viewer = bench->opened();
    for (int i = 0; i < 3; ++i) {
        QVERIFY(viewer && viewer->sees(3, UsbBench::small));
        const int index = viewer->camera.deviceInfo().index;
        QVERIFY(bench->usb.unplug());
        QVERIFY(bench->lists(0));
        QVERIFY(!Viewer().open({CWDevice_Uvc, index, {}, 0, {}}));
        QVERIFY(bench->usb.plug());
        QVERIFY(bench->lists(1));
        // The one before is still open when its successor comes.
        viewer = bench->opened();
    }
    QVERIFY(viewer && viewer->sees(3, UsbBench::small));
}

void tst_KernelUsbFailures::isNotListedWhileUnplugged()
{
    QVERIFY(bench->usb.unplug());
    QVERIFY(bench->lists(0));
    QVERIFY(bench->usb.plug());
    QVERIFY(bench->lists(1));
}

/// To the kernel it does not matter whether the other is another program.
void tst_KernelUsbFailures::aCameraInUseDoesNotOpen()
{
    const auto first = bench->opened();
    QVERIFY(first && first->sees(1, UsbBench::small));
    QVERIFY(!bench->openedAtOnce());
    QVERIFY(first->sees(3, UsbBench::small));
    first->camera.close();
    const auto second = bench->opened();
    QVERIFY(second && second->sees(1, UsbBench::small));
}

void tst_KernelUsbFailures::skipsDamagedPictures_data()
{
    QTest::addColumn<QString>("command");
    QTest::newRow("truncated") << QStringLiteral("truncate 10");
    QTest::newRow("corrupt") << QStringLiteral("corrupt 10");
}

void tst_KernelUsbFailures::skipsDamagedPictures()
{
    QFETCH(QString, command);
    constexpr int damages = 10;
    const auto viewer = bench->opened();
    QVERIFY(viewer);
    QVERIFY(viewer->sees(5, UsbBench::small));
    const QString line = QStringLiteral("DAMAGED ");
    viewer->forget();
    QVERIFY(bench->usb.obey(command));
    QTRY_COMPARE_WITH_TIMEOUT(bench->usb.heard(line).size(), damages, vm::patience);
    QVERIFY(viewer->sees(5, UsbBench::small));

    // Some may have been dropped before decoding, where the machine is slow.
    const quint64 counted = viewer->damagedFrames();
    QVERIFY2(counted >= 1 && counted <= damages, qPrintable(QString::number(counted)));
    const QStringList damaged = bench->usb.heard(line);
    for (const Viewer::Picture& picture : viewer->pictures())
        QVERIFY2(picture.isRight && !damaged.contains(QString::number(picture.number)),
                 qPrintable(QStringLiteral("picture %1 was shown").arg(picture.number)));
}

void tst_KernelUsbFailures::restartsAStalledStream()
{
    const auto viewer = bench->opened();
    QVERIFY(viewer);
    QVERIFY(viewer->sees(5, UsbBench::small));
    bench->usb.forget();
    QVERIFY(bench->usb.obey(QStringLiteral("stall 1")));
    QTRY_VERIFY_WITH_TIMEOUT(viewer->restarts() >= 1, vm::patience);
    QVERIFY(viewer->sees(5, UsbBench::small));
    QVERIFY(!bench->usb.heard(QStringLiteral("STARTED")).isEmpty());
}

void tst_KernelUsbFailures::triesUntilAStalledCameraComesBack()
{
    const auto viewer = bench->opened();
    QVERIFY(viewer);
    QVERIFY(viewer->sees(5, UsbBench::small));
    QElapsedTimer timer;
    timer.start();
    QVERIFY(bench->usb.obey(QStringLiteral("stall 3")));
    QTRY_VERIFY_WITH_TIMEOUT(viewer->restarts() >= 3, vm::patience);
    QVERIFY(viewer->sees(5, UsbBench::small));
    qInfo("Back after %lld ms", timer.elapsed());
}

void tst_KernelUsbFailures::aCameraWithoutAnswersHoldsNobodyUp()
{
    const auto viewer = bench->opened();
    QVERIFY(viewer);
    QVERIFY(viewer->sees(5, UsbBench::small));
    double contrast = 0;
    QCOMPARE(viewer->device().getProperty(CMProperty_Contrast, &contrast), 0);
    QVERIFY(bench->usb.obey(QStringLiteral("deaf")));
    QElapsedTimer timer;
    timer.start();
    viewer->device().setProperty(CMProperty_Brightness, 1);
    double value = 0;
    for (int i = 0; i < 20; ++i) {
        QCOMPARE(viewer->device().getProperty(CMProperty_Contrast, &value), 0);
        QCOMPARE(value, contrast);
    }
    QVERIFY2(timer.elapsed() < 3000, qPrintable(QString::number(timer.elapsed())));
    QVERIFY(viewer->sees(10, UsbBench::small));
    QVERIFY(bench->usb.obey(QStringLiteral("hear")));
    QCOMPARE(viewer->device().setProperty(CMProperty_Brightness, 2), 0);
    QVERIFY(bench->usb.hears(QStringLiteral("SET brightness 2")));
}

void tst_KernelUsbFailures::closesInTimeWhileTheCameraDoesNotAnswer()
{
    const auto viewer = bench->opened();
    QVERIFY(viewer && viewer->sees(3, UsbBench::small));
    QVERIFY(bench->usb.obey(QStringLiteral("deaf")));
    QElapsedTimer timer;
    timer.start();
    viewer->camera.close();
    QVERIFY2(timer.elapsed() < 2000, qPrintable(QString::number(timer.elapsed())));
    QVERIFY(bench->usb.obey(QStringLiteral("hear")));
    const auto next = bench->opened();
    QVERIFY(next && next->sees(3, UsbBench::small));
}

QTEST_GUILESS_MAIN(tst_KernelUsbFailures)
#include "tst_KernelUsbFailures.moc"
