#include <zolens/MyCamera.h>

#include "support/ProcessUse.h"

#include <QtTest>

#include <atomic>

using processuse::residentBytes;

class tst_CameraReopening final : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { processuse::returnFreedMemory(); }

    void opensTwoHundredTimesWithoutLeaking()
    {
        const auto cycle = [] {
            std::atomic<int> frames{0};
            MyCamera camera;
            connect(
                &camera, &MyCamera::getImage, &camera, [&frames](const QImage&) { ++frames; },
                Qt::DirectConnection);
            QVERIFY(camera.open(CWDevice_Simulated, 0, true));
            QCOMPARE(camera.camera->setPreviewSize(0), 0);
            QTRY_VERIFY_WITH_TIMEOUT(frames > 0, 5000);
            camera.close();
        };
        for (int i = 0; i < 20; ++i)
            cycle();
        const auto before = processuse::settledHoldings();
        const qint64 memory = residentBytes();
        for (int i = 0; i < 200; ++i)
            cycle();
        QCOMPARE(processuse::growthSince(before), QString());
        // One leaked frame an opening would be 250 MB.
        QVERIFY2(residentBytes() - memory < 12'000'000,
                 qPrintable(QString::number(residentBytes() - memory)));
    }
};

QTEST_GUILESS_MAIN(tst_CameraReopening)
#include "tst_CameraReopening.moc"
