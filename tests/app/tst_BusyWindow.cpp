#include "app/MainWindow.h"

#include "app/Application.h"
#include "app/FrameNumber.h"
#include "canvas/GraphicsScene.h"
#include "canvas/GraphicsView.h"
#include "support/ProcessUse.h"

#include <zolens/MyCamera.h>

#include <QSettings>
#include <QtTest>

namespace {

constexpr int largestPreview = 4;
constexpr double exposureTime = 10000.0; ///< A whole period of the lamp.
const QSize largestSize(3840, 2160);
constexpr qint64 frameBytes = 4LL * 3840 * 2160;
constexpr qint64 poolBuffers = 5;
constexpr qint64 allowance = 16'000'000;
constexpr int busyTime = 4000;

zolens::SimulatedSettings settingsOfFrames()
{
    zolens::SimulatedSettings settings;
    settings.size = largestSize;
    settings.setValue(CMProperty_ExposureTime, exposureTime);
    return settings;
}

} // namespace

/// The window does not get to its events while a camera sends large frames.
class tst_BusyWindow final : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        setApplicationNames();
        QSettings().setValue(QStringLiteral("camera/tryStillCapture"), false);
        window = std::make_unique<MainWindow>();
        window->show();
        QVERIFY(QTest::qWaitForWindowActive(window.get()));
        QMetaObject::invokeMethod(window.get(), "openUsbDevice", Q_ARG(int, CWDevice_Simulated),
                                  Q_ARG(int, 0));
        QVERIFY(camera());
        connect(camera(), &MyCamera::getImage, this,
                [this](const QImage& frame) { numbers += number.of(frame); });
        camera()->camera->setAutoExposure(false);
        QCOMPARE(camera()->camera->setProperty(CMProperty_ExposureTime, exposureTime), 0);
        QCOMPARE(camera()->camera->setPreviewSize(largestPreview), 0);
        QTest::qWait(1500); // The placeholder comes a second after the opening.
        QTRY_COMPARE_WITH_TIMEOUT(shown().size(), largestSize, 10000);
    }

    void cleanupTestCase() { window.reset(); }

    void memoryIsThatOfThePoolAndTheNewestFrameShowsAfterwards()
    {
        numbers.clear();
        QTRY_VERIFY_WITH_TIMEOUT(numbers.size() >= 3, 10000);
        const int before = numbers.last();
        QVERIFY(before > 0);
        const qint64 memory = processuse::residentBytes();
        numbers.clear();
        QTest::qSleep(busyTime);
        const qint64 growth = processuse::residentBytes() - memory;
        QVERIFY2(growth < poolBuffers * frameBytes + allowance,
                 qPrintable(QString::number(growth)));

        // A still picture has the number of the frame that is being made.
        const int newest = number.of(camera()->snap()) - 1;
        QVERIFY2(newest > before + 4, "the camera has not gone on");
        // The frame that was on its way when the window became busy comes first.
        QTRY_VERIFY_WITH_TIMEOUT(numbers.size() >= 2, 1000);
        QVERIFY2(numbers[1] >= newest, qPrintable(QString::number(newest - numbers[1])));
        QVERIFY(number.of(shown()) >= newest);
    }

private:
    MyCamera* camera() const { return window->findChild<MyCamera*>(); }
    const QImage& shown() const
    {
        return window->findChild<GraphicsView*>()->imageScene()->currentImage();
    }

    const FrameNumber number{settingsOfFrames()};
    QVector<int> numbers; ///< Of the frames that the window has got.
    std::unique_ptr<MainWindow> window;
};

QTEST_MAIN(tst_BusyWindow)
#include "tst_BusyWindow.moc"
