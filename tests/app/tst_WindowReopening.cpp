#include "app/MainWindow.h"

#include "app/Application.h"
#include "canvas/GraphicsScene.h"
#include "canvas/GraphicsView.h"
#include "support/ProcessUse.h"

#include <zolens/MyCamera.h>

#include <QSettings>
#include <QtTest>

namespace {

constexpr int smallestPreview = 0;
const QSize smallestSize(640, 480);
constexpr int placeholderTime = 1300;

/// What may grow with every opening.
struct Use
{
    explicit Use(const QObject& window)
        : holdings(processuse::settledHoldings()),
          objects(window.findChildren<QObject*>().size()),
          memory(processuse::residentBytes())
    {
    }

    processuse::Holdings holdings;
    int objects;
    qint64 memory;
};

} // namespace

class tst_WindowReopening final : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        processuse::returnFreedMemory();
        setApplicationNames();
    }

    // From the picture of one size to that of another and back each time.
    void opensTwoHundredCamerasWithoutLeaking()
    {
        MainWindow window;
        window.show();
        QVERIFY(QTest::qWaitForWindowActive(&window));
        QVERIFY(openAndClose(window, 20));
        const Use before(window);
        QVERIFY(openAndClose(window, 200));
        QCOMPARE(processuse::growthSince(before.holdings), QString());
        const Use after(window);
        QCOMPARE(after.objects, before.objects);
        // One leaked frame an opening would be 250 MB.
        QVERIFY2(after.memory - before.memory < 12'000'000,
                 qPrintable(QString::number(after.memory - before.memory)));
    }

private:
    /// False when a camera does not open or shows no frame.
    static bool openAndClose(MainWindow& window, int times)
    {
        const auto* scene = window.findChild<GraphicsView*>()->imageScene();
        for (int i = 0; i < times; ++i) {
            QMetaObject::invokeMethod(&window, "openUsbDevice", Q_ARG(int, CWDevice_Simulated),
                                      Q_ARG(int, 0));
            const auto* camera = window.findChild<MyCamera*>();
            if (!camera || camera->camera->setPreviewSize(smallestPreview) != 0)
                return false;
            const auto showsFrame = [scene] {
                return scene->currentImage().size() == smallestSize;
            };
            if (!QTest::qWaitFor(showsFrame))
                return false;
            QMetaObject::invokeMethod(&window, "closeCamera");
            if (window.findChild<MyCamera*>())
                return false;
        }
        QTest::qWait(placeholderTime);
        return scene->currentImage().size() != smallestSize;
    }
};

QTEST_MAIN(tst_WindowReopening)
#include "tst_WindowReopening.moc"
